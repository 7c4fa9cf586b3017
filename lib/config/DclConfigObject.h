// DclConfigObject: one configuration record read from the options and mapped
// onto one row of a stack management table. Concrete kinds supply parsing,
// comparison, the row status and the MIB operation; DCLConfigList reconciles
// a running list of them with each newly loaded configuration.
//
// Also here: the readers that turn option values into the raw field forms
// the MIB rows use, and the one-letter row status used by debug dumps.
#ifndef ZAVREL_CONFIG_DCLCONFIGOBJECT_H
#define ZAVREL_CONFIG_DCLCONFIGOBJECT_H

#include "platform/OptionsNode.h"
#include "platform/String.h"

namespace Zavrel {

class DcRouterBase;
class DcConsole;

class DclConfigObject {
public:
    // Kind of options source a reload delivers: the VLAN's own options (may
    // create VLANs) or a remote's options (apply only to existing VLANs).
    // Other values are passed through to the routers as casts.
    enum OptionType : int { OPTION_TYPE_VLAN = 0, OPTION_TYPE_REMOTE = 1 };

    // Results of CompareWithNew.
    static constexpr int COMPARE_SAME = 0;
    static constexpr int COMPARE_CHANGED = 1;
    static constexpr int COMPARE_DIFFERENT = 2;

    explicit DclConfigObject(DcRouterBase& owner);
    // Copies id, router and VLAN from other; everything else starts fresh.
    explicit DclConfigObject(const DclConfigObject* other);
    virtual ~DclConfigObject();

    DclConfigObject(const DclConfigObject&) = delete;
    DclConfigObject& operator=(const DclConfigObject&) = delete;

    // True when the VLAN and the id are both equal.
    virtual bool KeyMatch(DclConfigObject* other) const;
    // Logs the object's bookkeeping at level 5, prefixed with prefix.
    virtual void DebugDump(const char* prefix);
    // 0: same object, same settings; 1: same key, changed settings;
    // 2: a different object.
    virtual int CompareWithNew(DclConfigObject* newer) = 0;
    // Takes over the settings of newer.
    virtual void UpdateFromNew(DclConfigObject* newer) = 0;
    // The row status the next commit writes.
    virtual unsigned short GetRowStatus() = 0;
    // Prepares the object so that its next commit removes its row.
    virtual void MarkDestroy() = 0;
    virtual void Display(DcConsole* console) = 0;
    // Performs the MIB operation for the current state; true when the object
    // is finished with (its row is gone) and must be deleted.
    virtual bool Commit() = 0;
    // Fills the object from one option record; false rejects the record.
    virtual bool ParseFromOption(const OptionsNode& node) = 0;

    bool GetInMib() const { return inMib; }
    void SetInMib(bool value) { inMib = value; }

    // Option names carry numbers after underscores ("<kind>_<id>_<n>_<m>"):
    // the unsigned decimal after the field-th underscore, truncated to 16
    // bits; 0 when the text has fewer underscores.
    unsigned short ParseKeyFromName(const char* text, int field);
    // Field 2, also stored in id.
    unsigned short ParseId(const char* text);
    // Field 3.
    unsigned short ParseNumber(const char* text);
    // Field 4.
    unsigned short ParseSecondIndex(const char* text);
    // Reads an int member (fallback 0): 1 gives address family 2 (IPv6),
    // anything else 1 (IPv4). Returns the read result.
    bool ParseAfiOption(const OptionsNode& node, long& afi, const char* key);
    // Reads an int member (fallback 3): 0 gives 3, 1 gives 128, 2 gives 2,
    // 3 and anything else give 1. Returns the read result.
    bool ParseSafiOption(const OptionsNode& node, long& safi, const char* key);

    unsigned short vlan;
    unsigned int id;
    string name;
    OptionType optionType;
    bool inMib;
    bool actionReq;
    bool held;
    DcRouterBase& router;
};

// One letter per row status for debug dumps: 1..6 give M, U, U, C, U, D;
// every other value gives U.
char DebugRowStatus(unsigned short status);

// Reads the member key as IPv4 text into 4 raw bytes. length becomes 4 when
// the text is a valid address, else 0 (out untouched). Returns length != 0.
bool ReadDCLMibIpAddress(const OptionsNode& node, const char* key, unsigned char* out,
                         unsigned char& length);
// The same for IPv6: 16 bytes and length 16.
bool ReadDCLMibIpv6Address(const OptionsNode& node, const char* key, unsigned char* out,
                           unsigned char& length);
// Reads the member key as text into out (at least 128 bytes): empty or absent
// gives "" and length 0 (true); a text beginning with ".*" is refused with a
// log line ("" and 0, false); otherwise at most 127 characters are copied and
// length is the smaller of the text's length and 127.
bool ReadDCLMibString(const OptionsNode& node, const char* key, unsigned char* out,
                      unsigned long& length);
// Reads an int member (fallback 0). On success stores it in value, sets
// present to 1 and returns true; on failure touches neither.
bool ReadDCLMibValue(const OptionsNode& node, const char* key, long& value, long& present);
bool ReadDCLMibValue(const OptionsNode& node, const char* key, unsigned long& value, long& present);

}  // namespace Zavrel

#endif
