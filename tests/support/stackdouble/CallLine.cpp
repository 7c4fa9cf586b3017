#include "support/stackdouble/CallLine.h"

#include <arpa/inet.h>
#include <sys/socket.h>

namespace Zavrel::test {

namespace {

std::string Quoted(const char* text) {
    return text == nullptr ? std::string("null") : std::string("\"") + text + "\"";
}

// Address text of family af (AF_INET, 4 bytes; AF_INET6, 16), or null.
std::string AddressText(int af, const unsigned char* bytes) {
    if (bytes == nullptr) {
        return "null";
    }
    char text[INET6_ADDRSTRLEN];
    if (inet_ntop(af, bytes, text, sizeof text) == nullptr) {
        return "?";
    }
    return text;
}

std::string EntityText(const amb_cipr_rtm_entity* e) {
    if (e == nullptr) {
        return "null";
    }
    std::string text = "{inst=" + std::to_string(e->instance_index);
    text += " rs=" + std::to_string(e->row_status);
    text += " as=" + std::to_string(e->admin_status);
    text += " ospf_int=" + std::to_string(e->ospf_int_distance);
    text += " ospf_ext=" + std::to_string(e->ospf_ext_distance);
    text += " ebgp=" + std::to_string(e->ebgp_distance);
    text += " ibgp=" + std::to_string(e->ibgp_distance);
    text += " rip=" + std::to_string(e->rip_distance);
    text += " dead=" + std::to_string(e->dead_rpm_timer);
    text += " af=" + std::to_string(e->addr_family) + "}";
    return text;
}

}  // namespace

CallLine::CallLine(const char* function, bool render) : m_render(render) {
    if (m_render) {
        m_text = function;
        m_text += "(";
    }
}

void CallLine::Raw(const std::string& text) {
    if (!m_first) {
        m_text += ", ";
    }
    m_first = false;
    m_text += text;
}

CallLine& CallLine::Signed(long value) {
    return Add([value] { return std::to_string(value); });
}

CallLine& CallLine::Unsigned(unsigned long value) {
    return Add([value] { return std::to_string(value); });
}

CallLine& CallLine::Text(const char* text) {
    return Add([text] { return Quoted(text); });
}

CallLine& CallLine::Ip4(const unsigned char* bytes) {
    return Add([bytes] { return AddressText(AF_INET, bytes); });
}

CallLine& CallLine::Ip6(const unsigned char* bytes) {
    return Add([bytes] { return AddressText(AF_INET6, bytes); });
}

CallLine& CallLine::AddressByFamily(const unsigned char* bytes, long family) {
    return family == 1 ? Ip4(bytes) : Ip6(bytes);
}

CallLine& CallLine::AddressByType(const unsigned char* bytes, unsigned long addrType) {
    return addrType == SMS_ADDR_TYPE_IPV6 ? Ip6(bytes) : Ip4(bytes);
}

CallLine& CallLine::Entity(const amb_cipr_rtm_entity* entity) {
    return Add([entity] { return EntityText(entity); });
}

}  // namespace Zavrel::test
