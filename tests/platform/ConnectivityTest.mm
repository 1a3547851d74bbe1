// The Mac root has a web server that answers every request with the status WEB_STATUS.
#include <gtest/gtest.h>

#include "platform/UtilsBridges.h"
#include "platform/Utils_Mac.h"

namespace {

TEST(Connectivity, IsAnAnswerWithStatus200) {
    EXPECT_EQ([Utils_Mac areConnected] != NO, WEB_STATUS == 200);
    EXPECT_EQ(areConnectedCPP(), WEB_STATUS == 200);
    EXPECT_EQ(areConnectedBridge(), WEB_STATUS == 200);
}

}  // namespace
