// StrictJson: every rule of the JSON grammar, with documents written here.
#include "platform/StrictJson.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace Zavrel {
namespace {

bool Valid(const std::string& text) {
    size_t offset = 0;
    std::string message;
    return StrictJson::Check(text.data(), text.size(), offset, message);
}

struct Refusal {
    size_t offset = 0;
    std::string message;
};

Refusal Refuse(const std::string& text) {
    Refusal refusal;
    EXPECT_FALSE(StrictJson::Check(text.data(), text.size(), refusal.offset, refusal.message))
        << text;
    return refusal;
}

// Documents the grammar accepts, one rule or more each.
const std::vector<std::string> kValid = {
    // values
    "{}",
    "[]",
    "0",
    "-0",
    "1",
    "-1",
    "123",
    "\"\"",
    "\"a\"",
    "true",
    "false",
    "null",
    // white space: space, tab, line feed, carriage return, around everything
    " \t\r\n{ \t\r\n\"a\" \t\r\n: \t\r\n[ \t\r\n1 \t\r\n, \t\r\n2 \t\r\n] \t\r\n} \t\r\n",
    // objects
    "{\"a\":1}",
    "{\"a\":1,\"b\":{\"c\":[]}}",
    "{\"\":0}",
    // arrays
    "[1]",
    "[1,\"a\",true,false,null,{},[]]",
    "[[[[]]]]",
    // numbers: fraction, exponent with every sign and case, zero forms
    "[0.5]",
    "[-0.5]",
    "[10.25]",
    "[1e5]",
    "[1E5]",
    "[1e+5]",
    "[1e-5]",
    "[1.5e+3]",
    "[0e0]",
    "[0.0e-0]",
    "[1e01]",
    "[-0.0]",
    "[1e999]",
    // strings: every escape, unicode escapes, raw UTF-8
    "[\"\\\"\\\\\\/\\b\\f\\n\\r\\t\"]",
    "[\"\\u0041\\u00e9\\uFFFF\"]",
    "[\"caf\xc3\xa9 \xe2\x82\xac\"]",
    "[\"\\ud83d\\ude00\"]",
    "[\"a b\"]",
};

// Documents the grammar refuses, with the rule they break.
const std::vector<std::string> kInvalid = {
    // empty and white space only
    "",
    " ",
    "\t\r\n",
    // numbers
    "[-01]",
    "[01]",
    "[00]",
    "{\"a\":007}",
    "[+1]",
    "[2.]",
    "[-2.]",
    "[-]",
    "[.5]",
    "[1e]",
    "[1e+]",
    "[1E-]",
    "[0x10]",
    "[Infinity]",
    "[-Infinity]",
    "[NaN]",
    "[1.2.3]",
    "[--1]",
    // strings: raw control characters, bad escapes, unterminated
    "[\"a\tb\"]",
    "[\"a\nb\"]",
    "[\"a\rb\"]",
    std::string("[\"a\x01"
                "b\"]"),
    "[\"a\x1f\"]",
    "[\"\\x41\"]",
    "[\"\\u12\"]",
    "[\"\\u12G4\"]",
    "[\"\\a\"]",
    "[\"abc]",
    "['a']",
    // literals
    "[tru]",
    "[True]",
    "[NULL]",
    "[nul]",
    "[falsey]",
    // objects
    "{\"a\" 1}",
    "{\"a\":1,}",
    "{,\"a\":1}",
    "{\"a\":1 \"b\":2}",
    "{a:1}",
    "{1:1}",
    "{\"a\"}",
    "{\"a\":}",
    "{",
    // arrays
    "[1,]",
    "[,1]",
    "[1 2]",
    "[1,,2]",
    "[",
    "]",
    // more than one value, trailing content
    "{}{}",
    "[1] x",
    "1 2",
    "{\"a\":1}}",
    // white space the grammar does not know
    "[\f1]",
    "[\v1]",
    "[\xc2\xa0"
    "1]",
    // bytes that are not UTF-8 inside a string
    "[\"\xff\"]",
    "[\"\xc3\"]",
    // comments
    "/* c */ {}",
    "{} // c",
};

TEST(StrictJsonTest, AcceptsEveryRuleOfTheGrammar) {
    for (const std::string& text : kValid) {
        EXPECT_TRUE(Valid(text)) << text;
    }
}

TEST(StrictJsonTest, RefusesEveryDocumentTheGrammarRefuses) {
    for (const std::string& text : kInvalid) {
        EXPECT_FALSE(Valid(text)) << text;
    }
}

TEST(StrictJsonTest, ALeadingZeroIsNamedAtTheZero) {
    Refusal refusal = Refuse("{\"vid\": -01}");
    EXPECT_EQ(9u, refusal.offset);
    EXPECT_EQ("numbers may not start with a zero followed by digits", refusal.message);
    refusal = Refuse("[1, 007]");
    EXPECT_EQ(4u, refusal.offset);
    EXPECT_EQ("numbers may not start with a zero followed by digits", refusal.message);
}

TEST(StrictJsonTest, OtherRefusalsSayWhatIsWrongWhereItIs) {
    Refusal refusal = Refuse("[2.]");
    EXPECT_EQ(2u, refusal.offset);
    EXPECT_EQ("malformed number, a digit is required after the decimal point.", refusal.message);
    refusal = Refuse("[-]");
    EXPECT_EQ(1u, refusal.offset);
    EXPECT_EQ("malformed number, a digit is required after the minus sign.", refusal.message);
    refusal = Refuse("[+1]");
    EXPECT_EQ(1u, refusal.offset);
    EXPECT_EQ("invalid char in json text.", refusal.message);
    refusal = Refuse("[\"a\tb\"]");
    EXPECT_EQ(2u, refusal.offset);
    EXPECT_EQ("invalid character inside string.", refusal.message);
    refusal = Refuse("{\"a\":1,}");
    EXPECT_EQ("invalid object key (must be a string)", refusal.message);
    refusal = Refuse("[1,\v2,\f3]");
    EXPECT_EQ(3u, refusal.offset);
    EXPECT_EQ("form feed and vertical tab are not white space", refusal.message);
    refusal = Refuse("");
    EXPECT_EQ(0u, refusal.offset);
    EXPECT_EQ("premature EOF", refusal.message);
}

}  // namespace
}  // namespace Zavrel
