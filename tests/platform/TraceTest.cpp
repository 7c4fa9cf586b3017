#include "platform/Trace.h"

#include <gtest/gtest.h>

#include <string>

#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

using Line = CapturingTraceSink::Line;

class TraceTest : public test::TestEnv {};

// A sink that wants only levels up to a threshold and counts Wants calls.
class ThresholdSink : public TraceSink {
public:
    explicit ThresholdSink(int threshold) : m_threshold(threshold) {}
    bool Wants(int level) const override {
        ++asked;
        return level <= m_threshold;
    }
    void Write(int level, const char* text) override { lines.push_back({level, text}); }

    mutable int asked = 0;
    std::vector<Line> lines;

private:
    int m_threshold;
};

// Counts how often it is formatted, to show that formatting is skipped.
struct Counted {
    int* count;
};

const char* Describe(Counted c) {
    ++*c.count;
    return "counted";
}

TEST_F(TraceTest, TraceWithoutLevelIsLevelZero) {
    TRACE("plain %s\n", "text");
    ASSERT_EQ(1u, trace.Lines().size());
    EXPECT_EQ((Line{0, "plain text\n"}), trace.Lines()[0]);
}

TEST_F(TraceTest, TraceWithLevelKeepsTheLevel) {
    TRACE(10, "progress %d\n", 5);
    TRACE(3, "queue\n");
    ASSERT_EQ(2u, trace.Lines().size());
    EXPECT_EQ((Line{10, "progress 5\n"}), trace.Lines()[0]);
    EXPECT_EQ((Line{3, "queue\n"}), trace.Lines()[1]);
}

TEST_F(TraceTest, LevelZeroLiteralIsALevelNotAFormat) {
    TRACE(0, "zero\n");
    EXPECT_EQ((Line{0, "zero\n"}), trace.Lines().at(0));
}

TEST_F(TraceTest, MessageReachesTheSinkExactlyAsFormatted) {
    TRACE(1, "no newline");
    TRACE(1, "two\nlines\n");
    TRACE(1, "%s", "");
    EXPECT_EQ((std::vector<std::string>{"no newline", "two\nlines\n", ""}), trace.Texts());
}

TEST_F(TraceTest, LongMessagesAreNotTruncated) {
    const std::string big(5000, 'q');
    TRACE(5, "%s\n", big.c_str());
    EXPECT_EQ(big + "\n", trace.Lines().at(0).text);
}

TEST_F(TraceTest, UnwantedLevelIsNotFormatted) {
    ThresholdSink sink(1);
    TraceSink* before = SetTraceSink(&sink);
    EXPECT_EQ(&trace, before);
    int formatted = 0;
    TRACE(5, "%s\n", Describe(Counted{&formatted}));
    EXPECT_EQ(1, formatted);  // arguments are evaluated by the caller
    EXPECT_TRUE(sink.lines.empty());
    EXPECT_EQ(1, sink.asked);
    TRACE(1, "kept\n");
    ASSERT_EQ(1u, sink.lines.size());
    EXPECT_EQ((Line{1, "kept\n"}), sink.lines[0]);
    EXPECT_TRUE(TraceEnabled(0));
    EXPECT_TRUE(TraceEnabled(1));
    EXPECT_FALSE(TraceEnabled(2));
    SetTraceSink(before);
}

TEST_F(TraceTest, SetTraceSinkReturnsThePreviousSink) {
    EXPECT_EQ(&trace, GetTraceSink());
    CapturingTraceSink other;
    EXPECT_EQ(&trace, SetTraceSink(&other));
    EXPECT_EQ(&other, GetTraceSink());
    TRACE(2, "to other\n");
    EXPECT_EQ(&other, SetTraceSink(&trace));
    EXPECT_TRUE(trace.Lines().empty());
    EXPECT_TRUE(other.Contains(2, "to other\n"));
}

TEST_F(TraceTest, NullSinkRestoresTheDefaultStderrSinkWithThresholdZero) {
    SetTraceSink(nullptr);
    auto* sink = dynamic_cast<StderrTraceSink*>(GetTraceSink());
    ASSERT_NE(nullptr, sink);
    EXPECT_EQ(0, sink->Threshold());
    EXPECT_TRUE(TraceEnabled(0));
    EXPECT_FALSE(TraceEnabled(1));
    // Giving back what SetTraceSink returned restores the same sink.
    TraceSink* def = SetTraceSink(&trace);
    EXPECT_EQ(sink, def);
    SetTraceSink(def);
    EXPECT_EQ(sink, GetTraceSink());
}

TEST_F(TraceTest, StderrSinkWritesWantedLevelsToStandardError) {
    StderrTraceSink sink(3);
    EXPECT_TRUE(sink.Wants(3));
    EXPECT_FALSE(sink.Wants(4));
    sink.SetThreshold(10);
    EXPECT_EQ(10, sink.Threshold());
    SetTraceSink(&sink);
    testing::internal::CaptureStderr();
    TRACE(10, "to stderr %d\n", 1);
    TRACE(11, "dropped\n");
    const std::string written = testing::internal::GetCapturedStderr();
    SetTraceSink(&trace);
    EXPECT_EQ("to stderr 1\n", written);
}

TEST_F(TraceTest, SyslogSinkFiltersByThreshold) {
    SyslogTraceSink sink("zavrel-test", 1);
    EXPECT_TRUE(sink.Wants(0));
    EXPECT_TRUE(sink.Wants(1));
    EXPECT_FALSE(sink.Wants(2));
}

TEST_F(TraceTest, CapturingSinkTextsByLevel) {
    TRACE(1, "a\n");
    TRACE(2, "b\n");
    TRACE(1, "c\n");
    EXPECT_EQ((std::vector<std::string>{"a\n", "b\n", "c\n"}), trace.Texts());
    EXPECT_EQ((std::vector<std::string>{"a\n", "c\n"}), trace.Texts(1));
    EXPECT_TRUE(trace.Texts(7).empty());
}

TEST_F(TraceTest, CapturingSinkContainsMatchesWholeTextAndLevel) {
    TRACE(5, "issued request\n");
    EXPECT_TRUE(trace.Contains("issued request\n"));
    EXPECT_FALSE(trace.Contains("issued request"));
    EXPECT_TRUE(trace.Contains(5, "issued request\n"));
    EXPECT_FALSE(trace.Contains(4, "issued request\n"));
    EXPECT_TRUE(trace.Wants(1000));
    trace.Clear();
    EXPECT_TRUE(trace.Lines().empty());
    EXPECT_FALSE(trace.Contains("issued request\n"));
}

}  // namespace
}  // namespace Zavrel
