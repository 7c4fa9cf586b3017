#include "platform/Options.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace Zavrel {
namespace {

class OptionsTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = ::testing::TempDir() + "optionsXXXXXX";
        ASSERT_NE(nullptr, mkdtemp(&pattern[0]));
        m_dir = pattern;
    }
    void TearDown() override {
        for (const std::string& f : m_files) {
            unlink(f.c_str());
        }
        rmdir(m_dir.c_str());
    }

    std::string WriteFile(const std::string& name, const std::string& content) {
        const std::string path = m_dir + "/" + name;
        std::FILE* f = std::fopen(path.c_str(), "wb");
        EXPECT_NE(nullptr, f);
        if (f != nullptr) {
            std::fwrite(content.data(), 1, content.size(), f);
            std::fclose(f);
        }
        m_files.push_back(path);
        return path;
    }

    // Loads text into fresh options that hold {"kept": 1} before.
    std::string LoadError(const std::string& text) {
        Options options;
        EXPECT_TRUE(options.LoadFromText("{\"kept\": 1}"));
        EXPECT_FALSE(options.LoadFromText(text.data(), text.size())) << text.substr(0, 60);
        int kept = 0;
        EXPECT_TRUE(options.Root().GetLeafValue(kept, "kept", 0));
        EXPECT_EQ(1, kept);
        return options.Error().str();
    }

    static std::string Nested(int levels, const std::string& inner) {
        return std::string(static_cast<size_t>(levels), '[') + inner +
               std::string(static_cast<size_t>(levels), ']');
    }

    std::string m_dir;
    std::vector<std::string> m_files;
};

TEST_F(OptionsTest, StartsAsAnEmptyObject) {
    Options options;
    EXPECT_TRUE(options.Root().IsObject());
    EXPECT_EQ(0u, options.Root().Size());
    EXPECT_TRUE(options.Error().empty());
}

TEST_F(OptionsTest, WrapsAGivenJsonValue) {
    Json::Value root(Json::objectValue);
    root["vid"] = 12;
    Options options(root);
    EXPECT_EQ(string("12"), options["vid"].GetAsString());
    EXPECT_EQ(string("12"), options.Child("vid").GetAsString());
    EXPECT_EQ(12, options.Json()["vid"].asInt());
}

TEST_F(OptionsTest, LoadsAnObjectDocument) {
    Options options;
    ASSERT_TRUE(
        options.LoadFromText(string("{\n  \"VLAN_CONFIGURATIONS\": [ { \"vid\": 10, \"name\": "
                                    "\"ten\" } ],\n  \"RTM\": {}\n}")));
    EXPECT_TRUE(options.Error().empty());
    OptionsNode list = options["VLAN_CONFIGURATIONS"];
    EXPECT_TRUE(list.IsArray());
    EXPECT_EQ(1u, list.Size());
    EXPECT_TRUE(options["RTM"].IsObject());
}

TEST_F(OptionsTest, LoadsAnArrayDocument) {
    Options options;
    ASSERT_TRUE(options.LoadFromText("[1, 2, 3]"));
    EXPECT_TRUE(options.Root().IsArray());
    EXPECT_EQ(3u, options.Root().Size());
}

TEST_F(OptionsTest, SuccessfulLoadClearsAnEarlierError) {
    Options options;
    EXPECT_FALSE(options.LoadFromText("{"));
    EXPECT_FALSE(options.Error().empty());
    EXPECT_TRUE(options.LoadFromText("{}"));
    EXPECT_TRUE(options.Error().empty());
}

TEST_F(OptionsTest, DuplicateKeyIsRejectedWithItsPosition) {
    EXPECT_EQ("line 3, column 3: Duplicate key: 'vid'",
              LoadError("{\n  \"vid\": 1,\n  \"vid\": 2\n}"));
}

TEST_F(OptionsTest, DuplicateKeyInANestedObjectIsRejected) {
    EXPECT_EQ("line 1, column 16: Duplicate key: 'a'", LoadError("{\"x\": {\"a\": 1, \"a\": 2}}"));
}

TEST_F(OptionsTest, TrailingGarbageIsRejected) {
    EXPECT_EQ("line 1, column 10: Extra non-whitespace after JSON value.",
              LoadError("{\"a\": 1} x"));
    EXPECT_EQ("line 2, column 1: Extra non-whitespace after JSON value.", LoadError("{}\n{}"));
}

TEST_F(OptionsTest, DocumentsTheGrammarRefusesAreRefusedWhereTheyGoWrong) {
    // Each of these the reader alone would take for something else.
    EXPECT_EQ("line 2, column 11: numbers may not start with a zero followed by digits",
              LoadError("{\n  \"vid\": -01\n}"));
    EXPECT_EQ("line 1, column 7: numbers may not start with a zero followed by digits",
              LoadError("{\"a\": 007}"));
    EXPECT_EQ("line 1, column 7: invalid char in json text.", LoadError("{\"a\": +1}"));
    EXPECT_EQ("line 1, column 8: malformed number, a digit is required after the decimal point.",
              LoadError("{\"a\": 2.}"));
    EXPECT_EQ("line 1, column 7: malformed number, a digit is required after the minus sign.",
              LoadError("{\"a\": -}"));
    EXPECT_EQ("line 1, column 8: invalid character inside string.", LoadError("{\"a\": \"x\ty\"}"));
    EXPECT_EQ("line 1, column 8: invalid character inside string.", LoadError("{\"a\": \"x\ny\"}"));
    EXPECT_EQ("line 1, column 8: invalid bytes in UTF8 string.", LoadError("{\"a\": \"\xff\"}"));
}

TEST_F(OptionsTest, DocumentsTheGrammarAcceptsStillLoad) {
    Options options;
    ASSERT_TRUE(
        options.LoadFromText("{\"a\": -0.5e+3, \"b\": \"t\\tu\\u00e9\", \"c\": [0, -0, 1E2]}"))
        << options.Error().str();
    EXPECT_EQ(-500.0, options.Json()["a"].asDouble());
    EXPECT_EQ("t\tu\xc3\xa9", options.Json()["b"].asString());
    EXPECT_EQ(3u, options.Json()["c"].size());
}

TEST_F(OptionsTest, CommentsAreRejected) {
    EXPECT_EQ("line 2, column 1: comments are not allowed", LoadError("{\"a\": 1}\n// note"));
    EXPECT_EQ("line 1, column 7: comments are not allowed", LoadError("{\"a\": /* one */ 1}"));
    EXPECT_EQ("line 2, column 3: comments are not allowed", LoadError("{\n  /* x */ }"));
}

TEST_F(OptionsTest, SlashInsideATextIsNotAComment) {
    Options options;
    ASSERT_TRUE(options.LoadFromText("{\"prefix\": \"2001:db8::/64 // \\\" /*\"}"));
    EXPECT_EQ(string("2001:db8::/64 // \" /*"), options["prefix"].GetAsString());
}

TEST_F(OptionsTest, ScalarRootIsRejected) {
    EXPECT_EQ("line 1, column 1: A valid JSON document must be either an array or an object value.",
              LoadError("5"));
    EXPECT_EQ("line 1, column 1: A valid JSON document must be either an array or an object value.",
              LoadError("\"text\""));
}

TEST_F(OptionsTest, EmptyDocumentIsRejected) {
    EXPECT_EQ("line 1, column 1: the document is empty", LoadError(""));
    EXPECT_EQ("line 2, column 3: the document is empty", LoadError(" \n  "));
}

TEST_F(OptionsTest, SyntaxErrorsNameTheirPosition) {
    EXPECT_EQ("line 3, column 3: Syntax error: value, object or array expected.",
              LoadError("[1,\n2,\n  x]"));
    EXPECT_EQ("line 1, column 9: Missing '}' or object member name", LoadError("{\"a\": 1,}"));
    EXPECT_EQ("line 1, column 2: Missing '}' or object member name", LoadError("{'a': 1}"));
    EXPECT_EQ("line 1, column 7: '1e400' is not a number.", LoadError("{\"a\": 1e400}"));
}

TEST_F(OptionsTest, UnterminatedDocumentIsRejected) {
    const std::string error = LoadError("{\"a\": [1, 2");
    EXPECT_EQ(0u, error.find("line 1, column ")) << error;
}

TEST_F(OptionsTest, CarriageReturnsEndLines) {
    EXPECT_EQ("line 3, column 1: Duplicate key: 'a'", LoadError("{\"a\": 1,\r\n\r\"a\": 2}"));
}

TEST_F(OptionsTest, TwoHundredLevelsOfNestingAreAccepted) {
    Options options;
    const std::string text = Nested(200, "1");
    ASSERT_TRUE(options.LoadFromText(text.data(), text.size())) << options.Error().str();
}

TEST_F(OptionsTest, NestingUpToTheLimitIsAccepted) {
    // The root counts as level 1: 255 containers around a number, or 256
    // empty ones, reach exactly MAX_DEPTH levels.
    Options options;
    EXPECT_TRUE(options.LoadFromText(string(Nested(255, "1")))) << options.Error().str();
    EXPECT_TRUE(options.LoadFromText(string(Nested(256, "")))) << options.Error().str();
    std::string objects;
    for (int i = 0; i < 255; ++i) {
        objects += "{\"a\":";
    }
    objects += "true" + std::string(255, '}');
    EXPECT_TRUE(options.LoadFromText(string(objects))) << options.Error().str();
    std::string emptyObjects;
    for (int i = 0; i < 255; ++i) {
        emptyObjects += "{\"a\":";
    }
    emptyObjects += "{}" + std::string(255, '}');
    EXPECT_TRUE(options.LoadFromText(string(emptyObjects))) << options.Error().str();
}

TEST_F(OptionsTest, NestedObjectsBeyondTheLimitAreRejected) {
    std::string objects;
    for (int i = 0; i < 256; ++i) {
        objects += "{\"a\":";
    }
    objects += "1" + std::string(256, '}');
    // The first member name of the 256th object is where it gets too deep.
    EXPECT_EQ("line 1, column 1277: nesting deeper than 256 levels", LoadError(objects));
}

TEST_F(OptionsTest, NestingBeyondTheLimitIsRejectedWithItsPosition) {
    EXPECT_EQ("line 1, column 257: nesting deeper than 256 levels", LoadError(Nested(256, "1")));
    EXPECT_EQ("line 1, column 257: nesting deeper than 256 levels", LoadError(Nested(257, "")));
    EXPECT_EQ("line 1, column 257: nesting deeper than 256 levels", LoadError(Nested(300, "1")));
}

TEST_F(OptionsTest, VeryDeepNestingIsRejectedWithoutCrashing) {
    const std::string text = Nested(100000, "");
    EXPECT_EQ("line 1, column 257: nesting deeper than 256 levels", LoadError(text));
}

TEST_F(OptionsTest, InputOverTheCapIsRejectedBeforeReading) {
    const std::string big(Options::MAX_INPUT_BYTES + 1, ' ');
    EXPECT_EQ("the document has 67108865 bytes, more than the limit of 67108864", LoadError(big));
}

TEST_F(OptionsTest, NullTextIsRejected) {
    Options options;
    EXPECT_FALSE(options.LoadFromText(nullptr, 3));
    EXPECT_EQ(string("no text to read"), options.Error());
}

TEST_F(OptionsTest, EmbeddedZeroByteIsRejected) {
    const std::string text("{\"a\": 1}\0", 9);
    EXPECT_EQ("line 1, column 9: unexpected zero byte", LoadError(text));
    EXPECT_EQ("line 1, column 8: unexpected zero byte",
              LoadError(std::string("{\"a\": \"\0\"}", 10)));
}

TEST_F(OptionsTest, LoadsAFile) {
    const std::string path = WriteFile("ok.json", "{\"vid\": 7}");
    Options options;
    ASSERT_TRUE(options.LoadFromFile(path.c_str())) << options.Error().str();
    int vid = 0;
    EXPECT_TRUE(options.Root().GetLeafValue(vid, "vid", 0));
    EXPECT_EQ(7, vid);
}

TEST_F(OptionsTest, MissingFileGivesCannotOpenWithTheSystemReason) {
    const std::string path = m_dir + "/absent.json";
    Options options;
    EXPECT_FALSE(options.LoadFromFile(path.c_str()));
    EXPECT_EQ("cannot open " + path + ": No such file or directory", options.Error().str());
    EXPECT_TRUE(options.Root().IsObject());
}

TEST_F(OptionsTest, NullFileNameIsRejected) {
    Options options;
    EXPECT_FALSE(options.LoadFromFile(nullptr));
    EXPECT_EQ(string("no file name"), options.Error());
}

TEST_F(OptionsTest, DirectoryCannotBeRead) {
    Options options;
    EXPECT_FALSE(options.LoadFromFile(m_dir.c_str()));
    EXPECT_EQ("cannot read " + m_dir + ": Is a directory", options.Error().str());
}

TEST_F(OptionsTest, FileErrorsArePrefixedWithThePath) {
    const std::string path = WriteFile("dup.json", "{\"a\": 1,\n \"a\": 2}");
    Options options;
    ASSERT_TRUE(options.LoadFromText("{\"kept\": true}"));
    EXPECT_FALSE(options.LoadFromFile(path.c_str()));
    EXPECT_EQ(path + ": line 2, column 2: Duplicate key: 'a'", options.Error().str());
    EXPECT_EQ(string("true"), options["kept"].GetAsString());
}

TEST_F(OptionsTest, FileOverTheCapIsRejected) {
    const std::string path = WriteFile("big.json", "");
    // A sparse file: its size is over the cap without using the disk.
    ASSERT_EQ(0, truncate(path.c_str(), static_cast<off_t>(Options::MAX_INPUT_BYTES + 1)));
    Options options;
    EXPECT_FALSE(options.LoadFromFile(path.c_str()));
    EXPECT_EQ(path + ": the file has 67108865 bytes, more than the limit of 67108864",
              options.Error().str());
}

}  // namespace
}  // namespace Zavrel
