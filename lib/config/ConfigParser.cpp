#include "config/ConfigParser.h"

#include <cstdlib>
#include <cstring>

#include "platform/StrUtil.h"
#include "platform/String.h"
#include "platform/Trace.h"

namespace Zavrel {

const char* const ConfigParser::VLAN_KEY = "vid";
const char* const ConfigParser::GROUP_NAME_KEY = "Name";
const char* const ConfigParser::DEFAULT_SECTION = "VLAN_CONFIGURATIONS";

ConfigParser::ConfigParser() : section(DEFAULT_SECTION) {}

ConfigParser::ConfigParser(const char* section_) : section(section_) {}

ConfigParser::~ConfigParser() = default;

bool ConfigParser::ParseOptions(const char* subsection, const Options& options) {
    if (subsection == nullptr) {
        return false;
    }
    OptionsNode list = options[section];
    if (list.IsEmpty()) {
        return false;
    }
    bool result = false;
    for (OptionsNodeIterator it = list.begin(); it != list.end(); ++it) {
        const OptionsNode& element = *it;
        if (element.IsEmpty()) {
            TRACE("This option item is invalid\n");
            continue;
        }
        int vid = 0;
        if (!element.GetLeafValue<int>(vid, VLAN_KEY, 0)) {
            TRACE("Failed to get VLAN id: %s\n", element.Error().c_str());
            continue;
        }
        unsigned short vlan = static_cast<unsigned short>(vid & 0xffff);
        result = ParseVlanOptions(vlan, element[subsection]);
        ParseKeys(vlan, element);
    }
    return result;
}

bool ConfigParser::ParseKeys(unsigned short, const OptionsNode&) {
    return true;
}

bool ConfigParser::GetVlanFromGroup(const char* prefix, const OptionsNode& node,
                                    unsigned short* vlan) {
    string name = node.GetAsString(GROUP_NAME_KEY);
    if (prefix == nullptr || !strcasestrstart(name.c_str(), prefix)) {
        return false;
    }
    const char* rest = name.c_str() + strlen(prefix);
    if (*rest == '\0') {
        return true;
    }
    if (*rest != '_' && *rest != ':') {
        return false;
    }
    char* end = nullptr;
    unsigned long number = strtoul(rest + 1, &end, 10);
    if (*end != '\0' && *end != '_' && *end != ':') {
        return false;
    }
    *vlan = static_cast<unsigned short>(number);
    return true;
}

}  // namespace Zavrel
