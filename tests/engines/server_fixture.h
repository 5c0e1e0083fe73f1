// tests/engines/server_fixture.h — one server for all tests of a suite.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "tests/engines/server.h"

namespace vellicor::testing {

/// Skips the tests when the server is not installed, and fails them when it does not start.
template <class ServerType>
class ServerFixture : public ::testing::Test {
protected:
    static void SetUpTestSuite() { _server = std::make_unique<ServerType>(); }
    static void TearDownTestSuite() { _server.reset(); }
    void SetUp() override {
        if (!_server->isInstalled()) GTEST_SKIP() << _server->trouble() << ": no script was run on it";
        ASSERT_EQ(_server->trouble(), "");
    }
    static ServerType& engine() { return *_server; }

private:
    static inline std::unique_ptr<ServerType> _server;
};

}  // namespace vellicor::testing
