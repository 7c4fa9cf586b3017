#include "emulator/OidCodec.h"

#include "stackapi/stackapi.h"

namespace Zavrel::Emulator {

Oid OidCodec::Prefix(unsigned long table) {
    return Oid{1, 3, 6, 1, 4, 1, 47810, 7, table};
}

void OidCodec::AppendBytes(Oid& oid, const unsigned char* bytes, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        oid.push_back(bytes == nullptr ? 0 : bytes[i]);
    }
}

Oid OidCodec::Route(unsigned long instance, long family, const unsigned char* destination,
                    unsigned long prefixLength, const unsigned char* nextHop,
                    unsigned long ifIndex) {
    const size_t size = family == 1 ? 4 : 16;
    Oid oid = Prefix(TABLE_ROUTE);
    oid.push_back(instance);
    oid.push_back(static_cast<unsigned long>(family));
    oid.push_back(prefixLength);
    AppendBytes(oid, destination, size);
    AppendBytes(oid, nextHop, size);
    oid.push_back(ifIndex);
    return oid;
}

Oid OidCodec::Redist(unsigned long instance, long source, long destination) {
    Oid oid = Prefix(TABLE_REDIST);
    oid.push_back(instance);
    oid.push_back(static_cast<unsigned long>(source));
    oid.push_back(static_cast<unsigned long>(destination));
    return oid;
}

Oid OidCodec::Ei(unsigned long instance, unsigned long ifIndex) {
    Oid oid = Prefix(TABLE_I3_EI);
    oid.push_back(instance);
    oid.push_back(ifIndex);
    return oid;
}

Oid OidCodec::Ea(unsigned long instance, unsigned long ifIndex, const unsigned char* address,
                 unsigned long addrType) {
    Oid oid = Prefix(TABLE_I3_EA);
    oid.push_back(instance);
    oid.push_back(ifIndex);
    oid.push_back(addrType);
    AppendBytes(oid, address, addrType == SMS_ADDR_TYPE_IPV4 ? 4 : 16);
    return oid;
}

unsigned long OidCodec::Write(const Oid& oid, unsigned long* buffer) {
    if (buffer != nullptr) {
        for (size_t i = 0; i < oid.size() && i < SMS_MAX_OID_LEN; ++i) {
            buffer[i] = oid[i];
        }
    }
    return static_cast<unsigned long>(oid.size());
}

std::string OidCodec::ToString(const Oid& oid) {
    std::string text;
    for (size_t i = 0; i < oid.size(); ++i) {
        if (i != 0) {
            text += ':';
        }
        text += std::to_string(oid[i]);
    }
    return text;
}

}  // namespace Zavrel::Emulator
