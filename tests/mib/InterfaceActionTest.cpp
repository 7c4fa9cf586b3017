#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mib/InterfaceAction.h"
#include "mib/MibOid.h"
#include "mib/Serializer.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

class InterfaceActionTest : public test::RecordingStackEnv {};

TEST_F(InterfaceActionTest, OutsideTheStackContextUsesTheActionCall) {
    InterfaceAction action(4, 1, 5, 100, "eth0", 0, 24, 3);
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_interface(4, 1, 5, 100, \"eth0\", 0, 24, 3)"});
}

TEST_F(InterfaceActionTest, InsideTheStackContextBuildsTheTestRequestWithTheSameArguments) {
    InterfaceAction action(1, 2, 32773, 100, "eth0", 7, 8, 9);
    action.IssueReq(true);
    EXPECT_EQ(
        RecordingStack::Instance().Requests(),
        std::vector<std::string>{"sms_bld_amb_test_i3_ei(1, 2, 32773, 100, \"eth0\", 7, 8, 9)"});
}

TEST_F(InterfaceActionTest, TracesTheRequestAtLevelFive) {
    InterfaceAction action(4, 1, 5, 100, "eth0", 0, 24, 0);
    action.IssueReq(true);
    EXPECT_EQ(trace.Texts(5),
              std::vector<std::string>{"InterfaceAction: shared_context = 1 row_status = 4 "
                                       "oper_status = 1 vlan = 5 if_index = 100 if_name = eth0\n"});
}

TEST_F(InterfaceActionTest, FullConstructorIsNamedUnknownAndDefaultOneInterfaceAction) {
    InterfaceAction full(4, 1, 5, 100, "eth0", 0, 24, 0);
    EXPECT_STREQ(full.name, "unknown");
    InterfaceAction empty;
    EXPECT_STREQ(empty.name, "InterfaceAction");
    EXPECT_STREQ(empty.IfName(), "");
    EXPECT_EQ(empty.RowStatus(), 0);
    EXPECT_EQ(empty.OperStatus(), 0u);
    EXPECT_EQ(empty.Vlan(), 0u);
    EXPECT_EQ(empty.IfIndex(), 0u);
    EXPECT_EQ(empty.Reserved(), 0u);
    EXPECT_EQ(empty.Flags(), 0);
    EXPECT_EQ(empty.Extra(), 0u);
}

TEST_F(InterfaceActionTest, FullConstructorShowsUnknownAsItsNameInSerializerTraces) {
    Serializer serializer;
    serializer.TraceSet().SelectAll();
    const unsigned long components[] = {1, 3, 6};
    serializer.Insert(MibOid(components, 3), new InterfaceAction(4, 1, 5, 100, "eth0", 0, 0, 0));
    bool found = false;
    for (const std::string& line : trace.Texts()) {
        if (line.find("added to p_action_list, action=unknown\n") != std::string::npos) {
            found = true;
        }
    }
    EXPECT_TRUE(found);
}

TEST_F(InterfaceActionTest, NameOfExactly255CharactersIsKeptWhole) {
    const std::string name(255, 'n');
    InterfaceAction action(4, 1, 5, 100, name.c_str(), 0, 0, 0);
    EXPECT_EQ(std::string(action.IfName()), name);
}

// A name that does not fit the 256-byte buffer is cut to 255 characters and
// stays terminated, instead of running past the buffer.
TEST_F(InterfaceActionTest, LongerNameIsCutTo255CharactersAndTerminated) {
    const std::string name(300, 'x');
    InterfaceAction action(4, 1, 5, 100, name.c_str(), 0, 0, 0);
    EXPECT_EQ(std::string(action.IfName()), std::string(255, 'x'));
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_interface(4, 1, 5, 100, \"" +
                                       std::string(255, 'x') + "\", 0, 0, 0)"});
}

TEST_F(InterfaceActionTest, NullNameIsTakenAsEmpty) {
    InterfaceAction action(6, 2, 5, 100, nullptr, 0, 0, 0);
    EXPECT_STREQ(action.IfName(), "");
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_interface(6, 2, 5, 100, \"\", 0, 0, 0)"});
}

TEST_F(InterfaceActionTest, ReturnsTheStackResultUnexamined) {
    RecordingStack::Instance().SetResult("sms_bld_amb_test_i3_ei", 3);
    InterfaceAction action(4, 1, 5, 100, "eth0", 0, 0, 0);
    EXPECT_EQ(action.IssueReq(true), 3ul);
}

}  // namespace
}  // namespace Zavrel
