// CallLine: builds the text of one recorded stack call,
// "function(arg, arg, ...)", following the rendering rules of RecordingStack.
#ifndef ZAVREL_STACKDOUBLE_CALLLINE_H
#define ZAVREL_STACKDOUBLE_CALLLINE_H

#include <string>

#include "stackapi/stackapi.h"

namespace Zavrel::test {

class CallLine {
public:
    // With render false the line stays empty and every argument is
    // skipped: for calls that are not recorded.
    explicit CallLine(const char* function, bool render = true);

    CallLine& Signed(long value);
    CallLine& Unsigned(unsigned long value);
    // Text in double quotes; a null text as null.
    CallLine& Text(const char* text);
    // Dotted IPv4 of the first 4 bytes, or null.
    CallLine& Ip4(const unsigned char* bytes);
    // Canonical IPv6 text of 16 bytes, or null.
    CallLine& Ip6(const unsigned char* bytes);
    // By route family: 1 IPv4, anything else IPv6.
    CallLine& AddressByFamily(const unsigned char* bytes, long family);
    // By address type: 2 IPv6, anything else (1 above all) IPv4.
    CallLine& AddressByType(const unsigned char* bytes, unsigned long addrType);
    // {inst=.. rs=.. as=.. ospf_int=.. ospf_ext=.. ebgp=.. ibgp=.. rip=.. dead=.. af=..}
    CallLine& Entity(const amb_cipr_rtm_entity* entity);

    // The finished line.
    std::string Str() const { return m_render ? m_text + ")" : std::string(); }

private:
    // Appends the text format() gives; format is not called when the line
    // is not rendered, so a call that is not recorded formats nothing.
    template <typename Format>
    CallLine& Add(Format format) {
        if (m_render) {
            Raw(format());
        }
        return *this;
    }
    void Raw(const std::string& text);

    std::string m_text;
    bool m_first = true;
    bool m_render;
};

}  // namespace Zavrel::test

#endif
