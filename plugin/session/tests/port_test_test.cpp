// The port test against a port this test listens on, and one nobody listens on.
#include <gtest/gtest.h>

#include "plugin/session/port_test.h"
#include "tests/support/loopback_listener.h"

namespace {

using qae_test::LoopbackListener;

TEST(PortTest, APortWithAListenerIsTaken) {
  LoopbackListener listener;
  ASSERT_TRUE(listener.bound);
  bool addressFree = false;
  EXPECT_FALSE(IsPortFree(listener.port, &addressFree));
  EXPECT_TRUE(addressFree);
}

TEST(PortTest, APortNobodyListensOnIsFree) {
  uint16_t port = 0;
  {
    LoopbackListener listener;  // a port that was just free, and is again once the listener closes
    ASSERT_TRUE(listener.bound);
    port = listener.port;
  }
  bool addressFree = false;
  EXPECT_TRUE(IsPortFree(port, &addressFree));
  EXPECT_TRUE(addressFree);
}

TEST(PortTest, LoopbackAddressNamesThePort) {
  EXPECT_EQ(MakeLoopbackAddress(0), "127.0.0.1:0");
  EXPECT_EQ(MakeLoopbackAddress(5520), "127.0.0.1:5520");
  EXPECT_EQ(MakeLoopbackAddress(65535), "127.0.0.1:65535");
}

}  // namespace
