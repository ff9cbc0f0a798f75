// The custom signals of one kind of operands in slot order, as pointers to members of an interface `I`.
#pragma once

#define ORVANE_CUSTOM_SIGNALS_THEN(X, Y, Second)                                                        \
    &I::CalcSignalValue_##X##_ADD_##Y##_##Second##_C, &I::CalcSignalValue_##X##_SUB_##Y##_##Second##_C, \
        &I::CalcSignalValue_##X##_MUL_##Y##_##Second##_C, &I::CalcSignalValue_##X##_DIV_##Y##_##Second##_C

#define ORVANE_CUSTOM_SIGNALS(X, Y)                                               \
    ORVANE_CUSTOM_SIGNALS_THEN(X, Y, MUL), ORVANE_CUSTOM_SIGNALS_THEN(X, Y, DIV), \
        ORVANE_CUSTOM_SIGNALS_THEN(X, Y, ADD), ORVANE_CUSTOM_SIGNALS_THEN(X, Y, SUB)
