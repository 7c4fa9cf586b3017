// Options: load and unload.
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "app/CommandInterpreter.h"
#include "config/DclConfigObject.h"
#include "platform/Options.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel {

namespace {

// "[source <name>] [type <n>]" after the leading words, in any order, each
// at most once.
bool ReadSourceAndType(const std::vector<std::string>& words, size_t first, bool allowSource,
                       std::string& source, unsigned int& type, std::string& error) {
    bool haveSource = false;
    bool haveType = false;
    for (size_t i = first; i < words.size(); i += 2) {
        const std::string& keyword = words[i];
        const bool isSource = allowSource && Words::Is(keyword, "source");
        const bool isType = Words::Is(keyword, "type");
        if (!isSource && !isType) {
            error = "unexpected '" + keyword + "'";
            return false;
        }
        if ((isSource && haveSource) || (isType && haveType)) {
            error = "'" + keyword + "' given twice";
            return false;
        }
        if (i + 1 >= words.size()) {
            error = "missing value after '" + keyword + "'";
            return false;
        }
        if (isSource) {
            source = words[i + 1];
            haveSource = true;
        } else {
            if (!Words::ParseUnsigned(words[i + 1], type) || type > 0x7fffffffu) {
                error = "bad type '" + words[i + 1] + "'";
                return false;
            }
            haveType = true;
        }
    }
    return true;
}

std::string BaseName(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

CommandInterpreter::Result CommandInterpreter::Load(const Args& args) {
    if (args.Count() < 2) {
        return Result::Fail("load: missing <file>; " + UsageOf("load"));
    }
    const std::string& file = args[1];
    std::string source = BaseName(file);
    unsigned int type = 0;
    std::string error;
    if (!ReadSourceAndType(args.words, 2, true, source, type, error)) {
        return Result::Fail("load: " + error + "; " + UsageOf("load"));
    }
    if (source.empty()) {
        return Result::Fail("load: empty source name");
    }
    const std::string path = (!file.empty() && file[0] == '/') ? file : args.baseDir + file;
    FILE* probe = fopen(path.c_str(), "r");
    if (probe == nullptr) {
        return Result::Fail("load: cannot read '" + file + "': " + strerror(errno));
    }
    fclose(probe);
    Options options;
    if (!options.LoadFromFile(path.c_str())) {
        return Result::Fail("load: '" + file + "' is not valid options: " + options.Error().str());
    }
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return Result::Fail("load: no router manager");
    }
    manager->Reload(options, string(source), static_cast<DclConfigObject::OptionType>(type));
    return Result::Ok();
}

CommandInterpreter::Result CommandInterpreter::Unload(const Args& args) {
    if (args.Count() < 2) {
        return Result::Fail("unload: missing <source>; " + UsageOf("unload"));
    }
    std::string source = args[1];
    unsigned int type = 0;
    std::string error;
    if (!ReadSourceAndType(args.words, 2, false, source, type, error)) {
        return Result::Fail("unload: " + error + "; " + UsageOf("unload"));
    }
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return Result::Fail("unload: no router manager");
    }
    manager->DeleteOptions(string(source), static_cast<DclConfigObject::OptionType>(type));
    return Result::Ok();
}

}  // namespace Zavrel
