// DclConfigObject: configuration records, and the option-to-MIB readers.
#include "config/DclConfigObject.h"

#include <cstdlib>
#include <cstring>

#include "config/OptionParsers.h"
#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "platform/Trace.h"

namespace Zavrel {

DclConfigObject::DclConfigObject(DcRouterBase& owner)
    : vlan(0),
      id(0),
      optionType(OPTION_TYPE_VLAN),
      inMib(false),
      actionReq(true),
      held(false),
      router(owner) {}

DclConfigObject::DclConfigObject(const DclConfigObject* other)
    : vlan(other->vlan),
      id(other->id),
      optionType(OPTION_TYPE_VLAN),
      inMib(false),
      actionReq(true),
      held(false),
      router(other->router) {}

DclConfigObject::~DclConfigObject() = default;

bool DclConfigObject::KeyMatch(DclConfigObject* other) const {
    return other != nullptr && vlan == other->vlan && id == other->id;
}

void DclConfigObject::DebugDump(const char* prefix) {
    TRACE(5, "%s:: ActionReq: %d InMib: %d  Vlan: %d   ID: %d RowStatus %c\n",
          prefix != nullptr ? prefix : "", actionReq ? 1 : 0, inMib ? 1 : 0, static_cast<int>(vlan),
          static_cast<int>(id), DebugRowStatus(GetRowStatus()));
}

unsigned short DclConfigObject::ParseKeyFromName(const char* text, int field) {
    if (text == nullptr) {
        return 0;
    }
    int seen = 0;
    for (const char* p = text; *p != '\0'; ++p) {
        if (*p == '_' && ++seen == field) {
            return static_cast<unsigned short>(std::strtoul(p + 1, nullptr, 10));
        }
    }
    return 0;
}

unsigned short DclConfigObject::ParseId(const char* text) {
    const unsigned short value = ParseKeyFromName(text, 2);
    id = value;
    return value;
}

unsigned short DclConfigObject::ParseNumber(const char* text) {
    return ParseKeyFromName(text, 3);
}

unsigned short DclConfigObject::ParseSecondIndex(const char* text) {
    return ParseKeyFromName(text, 4);
}

bool DclConfigObject::ParseAfiOption(const OptionsNode& node, long& afi, const char* key) {
    int value = 0;
    const bool read = node.GetLeafValue<int>(value, key, 0);
    afi = (value == 1) ? 2 : 1;
    return read;
}

bool DclConfigObject::ParseSafiOption(const OptionsNode& node, long& safi, const char* key) {
    int value = 3;
    const bool read = node.GetLeafValue<int>(value, key, 3);
    switch (value) {
        case 0:
            safi = 3;
            break;
        case 1:
            safi = 128;
            break;
        case 2:
            safi = 2;
            break;
        default:
            safi = 1;
            break;
    }
    return read;
}

char DebugRowStatus(unsigned short status) {
    static const char letters[] = "MUUCUD";
    if (status >= 1 && status <= 6) {
        return letters[status - 1];
    }
    return 'U';
}

bool ReadDCLMibIpAddress(const OptionsNode& node, const char* key, unsigned char* out,
                         unsigned char& length) {
    length = 0;
    const string text = node.GetAsString(key);
    Ip4Addr address;
    if (!text.empty() && ParseAddress(address, text.c_str())) {
        std::memcpy(out, address.Bytes(), 4);
        length = 4;
    }
    return length != 0;
}

bool ReadDCLMibIpv6Address(const OptionsNode& node, const char* key, unsigned char* out,
                           unsigned char& length) {
    length = 0;
    const string text = node.GetAsString(key);
    Ip6Addr address;
    if (!text.empty() && address.FromString(text)) {
        std::memcpy(out, address.Bytes(), 16);
        length = 16;
    }
    return length != 0;
}

bool ReadDCLMibString(const OptionsNode& node, const char* key, unsigned char* out,
                      unsigned long& length) {
    static const size_t kMaxLength = 127;
    const string text = node.GetAsString(key);
    char* dst = reinterpret_cast<char*>(out);
    if (text.empty()) {
        dst[0] = '\0';
        length = 0;
        return true;
    }
    // The text is a pattern for the stack; one that starts by matching
    // everything is refused.
    if (text.length() >= 2 && text[0] == '.' && text[1] == '*') {
        TRACE("%s: Invalid regex string \".*\" in option %s\n", "ReadDCLMibString",
              key != nullptr ? key : "");
        dst[0] = '\0';
        length = 0;
        return false;
    }
    std::strncpy(dst, text.c_str(), kMaxLength);
    // Bounded copy: a text of 127 characters or more fills the 127 bytes
    // without a terminator; the byte after them is zeroed so the buffer
    // always reads as a terminated string.
    dst[kMaxLength] = '\0';
    length = static_cast<unsigned long>(text.length() < kMaxLength ? text.length() : kMaxLength);
    return true;
}

bool ReadDCLMibValue(const OptionsNode& node, const char* key, long& value, long& present) {
    int read = 0;
    if (!node.GetLeafValue<int>(read, key, 0)) {
        return false;
    }
    value = read;
    present = 1;
    return true;
}

bool ReadDCLMibValue(const OptionsNode& node, const char* key, unsigned long& value,
                     long& present) {
    int read = 0;
    if (!node.GetLeafValue<int>(read, key, 0)) {
        return false;
    }
    value = static_cast<unsigned long>(read);
    present = 1;
    return true;
}

}  // namespace Zavrel
