#pragma once
// Helpers shared by the exchange tests.
#include <gtest/gtest.h>

#include <functional>

#include "exchange/PalErrors.h"
#include "tests/support/RealPalettes.h"

// Runs `body` and checks that it throws PAL::CommonError with the expected case; returns the error.
inline PAL::CommonError expectCommonError(PAL::CommonError::Case expected, const std::function<void()>& body) {
    try {
        body();
    } catch (const PAL::CommonError& error) {
        EXPECT_EQ(PAL::caseName(error.errorCase()), PAL::caseName(expected));
        return error;
    }
    ADD_FAILURE() << "expected PAL.CommonError." << PAL::caseName(expected);
    return PAL::CommonError(expected);
}

