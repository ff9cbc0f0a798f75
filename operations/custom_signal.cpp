// The sixty-four custom signals: what they have in common, then one line per operation in slot order.
#include <algorithm>

#include <orvane/OVCustomSignal.h>

#include "operations/custom_signal_kernels.h"

namespace Orvane {
namespace {

using Events = IOVCustomSignal::Events;

void CombineColumns(Events& sections, int target, int a, int b, const CustomFormula& formula) {
    for (const EventSection* section : sections)
        CalcColumn(formula, (*section)[a], (*section)[b], section->Count, (*section)[target]);
}

void CombineConstantAndColumn(Events& sections, int target, int e, int b, const CustomFormula& formula) {
    for (const EventSection* section : sections)
        CalcColumn(formula, static_cast<double>(e), (*section)[b], section->Count, (*section)[target]);
}

void CombineColumnAndConstant(Events& sections, int target, int a, int e, const CustomFormula& formula) {
    for (const EventSection* section : sections)
        CalcColumn(formula, (*section)[a], static_cast<double>(e), section->Count, (*section)[target]);
}

/// What follows E - E. Deliberate: the products and quotients of 0 are 0 whatever `c` is.
float ContinueFromZero(Operator second, float c) {
    switch (second) {
        case Operator::Add:
            return c;
        case Operator::Subtract:
            return -c;
        default:
            return 0.0F;
    }
}

/// What follows E / E.
float ContinueFromOne(Operator second, float c) {
    switch (second) {
        case Operator::Add:
            return c + 1.0F;
        case Operator::Subtract:
            return 1.0F - c;
        case Operator::Divide:
            return 1.0F / c;
        default:
            return c;
    }
}

/// Deliberate: E - E is 0 and E / E is 1 for every E, 0 included.
float CombineConstants(int e, const CustomFormula& formula) {
    if (formula.First == Operator::Subtract) return ContinueFromZero(formula.Second, formula.C);
    if (formula.First == Operator::Divide) return ContinueFromOne(formula.Second, formula.C);
    const double first = Apply(formula.First, static_cast<double>(e), static_cast<double>(e));
    return static_cast<float>(Apply(formula.Second, first, static_cast<double>(formula.C)));
}

void FillWithConstant(Events& sections, int target, int e, const CustomFormula& formula) {
    const float value = CombineConstants(e, formula);
    for (const EventSection* section : sections)
        std::fill_n((*section)[target], std::max(section->Count, 0), value);
}

}  // namespace

#define ORVANE_A_B(Name, First, Second)                                                 \
    void OVCustomSignal::Name(Events& sections, int target, int a, int b, float c) {    \
        CombineColumns(sections, target, a, b, {Operator::First, Operator::Second, c}); \
    }
ORVANE_A_B(CalcSignalValue_A_ADD_B_MUL_C, Add, Multiply)
ORVANE_A_B(CalcSignalValue_A_SUB_B_MUL_C, Subtract, Multiply)
ORVANE_A_B(CalcSignalValue_A_MUL_B_MUL_C, Multiply, Multiply)
ORVANE_A_B(CalcSignalValue_A_DIV_B_MUL_C, Divide, Multiply)
ORVANE_A_B(CalcSignalValue_A_ADD_B_DIV_C, Add, Divide)
ORVANE_A_B(CalcSignalValue_A_SUB_B_DIV_C, Subtract, Divide)
ORVANE_A_B(CalcSignalValue_A_MUL_B_DIV_C, Multiply, Divide)
ORVANE_A_B(CalcSignalValue_A_DIV_B_DIV_C, Divide, Divide)
ORVANE_A_B(CalcSignalValue_A_ADD_B_ADD_C, Add, Add)
ORVANE_A_B(CalcSignalValue_A_SUB_B_ADD_C, Subtract, Add)
ORVANE_A_B(CalcSignalValue_A_MUL_B_ADD_C, Multiply, Add)
ORVANE_A_B(CalcSignalValue_A_DIV_B_ADD_C, Divide, Add)
ORVANE_A_B(CalcSignalValue_A_ADD_B_SUB_C, Add, Subtract)
ORVANE_A_B(CalcSignalValue_A_SUB_B_SUB_C, Subtract, Subtract)
ORVANE_A_B(CalcSignalValue_A_MUL_B_SUB_C, Multiply, Subtract)
ORVANE_A_B(CalcSignalValue_A_DIV_B_SUB_C, Divide, Subtract)
#undef ORVANE_A_B

#define ORVANE_E_B(Name, First, Second)                                                           \
    void OVCustomSignal::Name(Events& sections, int target, int e, int b, float c) {              \
        CombineConstantAndColumn(sections, target, e, b, {Operator::First, Operator::Second, c}); \
    }
ORVANE_E_B(CalcSignalValue_E_ADD_B_MUL_C, Add, Multiply)
ORVANE_E_B(CalcSignalValue_E_SUB_B_MUL_C, Subtract, Multiply)
ORVANE_E_B(CalcSignalValue_E_MUL_B_MUL_C, Multiply, Multiply)
ORVANE_E_B(CalcSignalValue_E_DIV_B_MUL_C, Divide, Multiply)
ORVANE_E_B(CalcSignalValue_E_ADD_B_DIV_C, Add, Divide)
ORVANE_E_B(CalcSignalValue_E_SUB_B_DIV_C, Subtract, Divide)
ORVANE_E_B(CalcSignalValue_E_MUL_B_DIV_C, Multiply, Divide)
ORVANE_E_B(CalcSignalValue_E_DIV_B_DIV_C, Divide, Divide)
ORVANE_E_B(CalcSignalValue_E_ADD_B_ADD_C, Add, Add)
ORVANE_E_B(CalcSignalValue_E_SUB_B_ADD_C, Subtract, Add)
ORVANE_E_B(CalcSignalValue_E_MUL_B_ADD_C, Multiply, Add)
ORVANE_E_B(CalcSignalValue_E_DIV_B_ADD_C, Divide, Add)
ORVANE_E_B(CalcSignalValue_E_ADD_B_SUB_C, Add, Subtract)
ORVANE_E_B(CalcSignalValue_E_SUB_B_SUB_C, Subtract, Subtract)
ORVANE_E_B(CalcSignalValue_E_MUL_B_SUB_C, Multiply, Subtract)
ORVANE_E_B(CalcSignalValue_E_DIV_B_SUB_C, Divide, Subtract)
#undef ORVANE_E_B

#define ORVANE_A_E(Name, First, Second)                                                           \
    void OVCustomSignal::Name(Events& sections, int target, int a, int e, float c) {              \
        CombineColumnAndConstant(sections, target, a, e, {Operator::First, Operator::Second, c}); \
    }
ORVANE_A_E(CalcSignalValue_A_ADD_E_MUL_C, Add, Multiply)
ORVANE_A_E(CalcSignalValue_A_SUB_E_MUL_C, Subtract, Multiply)
ORVANE_A_E(CalcSignalValue_A_MUL_E_MUL_C, Multiply, Multiply)
ORVANE_A_E(CalcSignalValue_A_DIV_E_MUL_C, Divide, Multiply)
ORVANE_A_E(CalcSignalValue_A_ADD_E_DIV_C, Add, Divide)
ORVANE_A_E(CalcSignalValue_A_SUB_E_DIV_C, Subtract, Divide)
ORVANE_A_E(CalcSignalValue_A_MUL_E_DIV_C, Multiply, Divide)
ORVANE_A_E(CalcSignalValue_A_DIV_E_DIV_C, Divide, Divide)
ORVANE_A_E(CalcSignalValue_A_ADD_E_ADD_C, Add, Add)
ORVANE_A_E(CalcSignalValue_A_SUB_E_ADD_C, Subtract, Add)
ORVANE_A_E(CalcSignalValue_A_MUL_E_ADD_C, Multiply, Add)
ORVANE_A_E(CalcSignalValue_A_DIV_E_ADD_C, Divide, Add)
ORVANE_A_E(CalcSignalValue_A_ADD_E_SUB_C, Add, Subtract)
ORVANE_A_E(CalcSignalValue_A_SUB_E_SUB_C, Subtract, Subtract)
ORVANE_A_E(CalcSignalValue_A_MUL_E_SUB_C, Multiply, Subtract)
ORVANE_A_E(CalcSignalValue_A_DIV_E_SUB_C, Divide, Subtract)
#undef ORVANE_A_E

#define ORVANE_E_E(Name, First, Second)                                                \
    void OVCustomSignal::Name(Events& sections, int target, int e, float c) {          \
        FillWithConstant(sections, target, e, {Operator::First, Operator::Second, c}); \
    }
ORVANE_E_E(CalcSignalValue_E_ADD_E_MUL_C, Add, Multiply)
ORVANE_E_E(CalcSignalValue_E_SUB_E_MUL_C, Subtract, Multiply)
ORVANE_E_E(CalcSignalValue_E_MUL_E_MUL_C, Multiply, Multiply)
ORVANE_E_E(CalcSignalValue_E_DIV_E_MUL_C, Divide, Multiply)
ORVANE_E_E(CalcSignalValue_E_ADD_E_DIV_C, Add, Divide)
ORVANE_E_E(CalcSignalValue_E_SUB_E_DIV_C, Subtract, Divide)
ORVANE_E_E(CalcSignalValue_E_MUL_E_DIV_C, Multiply, Divide)
ORVANE_E_E(CalcSignalValue_E_DIV_E_DIV_C, Divide, Divide)
ORVANE_E_E(CalcSignalValue_E_ADD_E_ADD_C, Add, Add)
ORVANE_E_E(CalcSignalValue_E_SUB_E_ADD_C, Subtract, Add)
ORVANE_E_E(CalcSignalValue_E_MUL_E_ADD_C, Multiply, Add)
ORVANE_E_E(CalcSignalValue_E_DIV_E_ADD_C, Divide, Add)
ORVANE_E_E(CalcSignalValue_E_ADD_E_SUB_C, Add, Subtract)
ORVANE_E_E(CalcSignalValue_E_SUB_E_SUB_C, Subtract, Subtract)
ORVANE_E_E(CalcSignalValue_E_MUL_E_SUB_C, Multiply, Subtract)
ORVANE_E_E(CalcSignalValue_E_DIV_E_SUB_C, Divide, Subtract)
#undef ORVANE_E_E

}  // namespace Orvane
