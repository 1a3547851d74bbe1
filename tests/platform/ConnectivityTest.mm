// The Mac root has a web server that answers every request with one status: another in each run.
#include <gtest/gtest.h>

#include "platform/UtilsBridges.h"
#include "platform/Utils_Mac.h"
#include "tests/support/Command.h"

namespace {

// What another client is answered.
int StatusOfTheWeb() {
    return std::stoi(Python("import http.client\n"
                            "connection = http.client.HTTPConnection('www.google.com')\n"
                            "connection.request('GET', '/')\n"
                            "print(connection.getresponse().status)"));
}

TEST(Connectivity, IsAnAnswerWithStatus200) {
    const bool expected = StatusOfTheWeb() == 200;
    EXPECT_EQ([Utils_Mac areConnected] != NO, expected);
    EXPECT_EQ(areConnectedCPP(), expected);
    EXPECT_EQ(areConnectedBridge(), expected);
}

}  // namespace
