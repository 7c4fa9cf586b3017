// libFuzzer harness for the options loader: feeds arbitrary bytes to
// Options::LoadFromText and, when they load, reads the whole tree the way the
// library does (members, elements, texts, typed leaves). Besides the
// sanitizers' findings it stops on broken promises of the loader:
//  - a failed load leaves an error text and keeps the previous document;
//  - a failed typed read leaves its output unchanged;
//  - GetLeafValue always hands out the fallback when it fails.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/Options.h"
#include "platform/OptionsNode.h"

namespace {

void Check(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// Member names the library reads from real configurations.
const char* const kKeys[] = {"vid",
                             "VLAN_CONFIGURATIONS",
                             "RTM",
                             "ADMIN_DISTANCE",
                             "dead_rpm_timer",
                             "REDISTRIBUTION",
                             "enabled",
                             ""};

void ReadLeaves(const Zavrel::OptionsNode& node) {
    int i = -7;
    if (!node.AsVal(i)) {
        Check(i == -7);
    }
    unsigned int u = 7u;
    if (!node.AsVal(u)) {
        Check(u == 7u);
    }
    bool b = true;
    if (!node.AsVal(b)) {
        Check(b);
    }
    (void)node.GetAsString();
    for (const char* key : kKeys) {
        (void)node.GetAsString(key);
        int leaf = 0;
        if (!node.GetLeafValue(leaf, key, 42)) {
            Check(leaf == 42);
        }
        unsigned int uleaf = 0;
        if (!node.GetLeafValue(uleaf, key, 42u)) {
            Check(uleaf == 42u);
        }
        bool bleaf = false;
        if (!node.GetLeafValue(bleaf, key, true)) {
            Check(bleaf);
        }
    }
}

// The loader bounds nesting, so recursion here is bounded too.
void Walk(const Zavrel::OptionsNode& node, unsigned int depth) {
    Check(depth <= Zavrel::Options::MAX_DEPTH + 1);
    (void)node.IsEmpty();
    (void)node.IsNull();
    ReadLeaves(node);
    unsigned int count = 0;
    for (auto it = node.begin(); it != node.end(); ++it) {
        (void)it.Name();
        Walk(*it, depth + 1);
        ++count;
    }
    if (node.IsObject() || node.IsArray()) {
        Check(count == node.Size());
        // Looked up by name as well; read without descending again, which
        // would visit nested members once per path.
        for (const char* key : kKeys) {
            const Zavrel::OptionsNode member = node[key];
            Check(!member.HasValue() || node.IsObject());
            ReadLeaves(member);
        }
    } else {
        Check(node.Size() == 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const char kKnown[] = "{\"vid\": 5}";
    Zavrel::Options options;
    Check(options.LoadFromText(kKnown, sizeof kKnown - 1));
    const Json::Value before = options.Json();

    if (options.LoadFromText(reinterpret_cast<const char*>(data), size)) {
        Walk(options.Root(), 0);
    } else {
        Check(!options.Error().empty());
        Check(options.Json() == before);
    }
    return 0;
}
