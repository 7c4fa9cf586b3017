// ConfigParser: walks the list of per-VLAN option records of one top-level
// section and hands each record's sub-section to a subclass.
#ifndef ZAVREL_CONFIG_CONFIGPARSER_H
#define ZAVREL_CONFIG_CONFIGPARSER_H

#include "platform/Options.h"
#include "platform/OptionsNode.h"

namespace Zavrel {

class ConfigParser {
public:
    // Key of the VLAN number in each record, and of a group's name.
    static const char* const VLAN_KEY;
    static const char* const GROUP_NAME_KEY;
    static const char* const DEFAULT_SECTION;

    ConfigParser();                              // section "VLAN_CONFIGURATIONS"
    explicit ConfigParser(const char* section);  // not owned
    virtual ~ConfigParser();

    // Hands the sub-section of every record of the section to
    // ParseVlanOptions; the result is that of the last such call (false
    // when none was made).
    virtual bool ParseOptions(const char* subsection, const Options& options);
    // Reads one VLAN's sub-section (the node may have no value).
    virtual bool ParseVlanOptions(unsigned short vlan, const OptionsNode& node) = 0;
    // Called with each whole record after its sub-section; the result is
    // not used. Does nothing here.
    virtual bool ParseKeys(unsigned short vlan, const OptionsNode& record);

    // Recognises the node's "Name" of the form <prefix>, <prefix>_<vlan> or
    // <prefix>:<vlan> (prefix compared without regard to case), optionally
    // followed by "_" or ":" and more text. A bare prefix leaves *vlan as it
    // is. The number is not range-checked and is truncated to 16 bits.
    static bool GetVlanFromGroup(const char* prefix, const OptionsNode& node, unsigned short* vlan);

    const char* Section() const { return section; }

protected:
    const char* section;
};

}  // namespace Zavrel

#endif
