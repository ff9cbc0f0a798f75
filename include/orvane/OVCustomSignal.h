// Derived signals: a column computed from others by a formula of two steps.
#pragma once

#include <vector>

#include <orvane/Platform.h>
#include <orvane/Sections.h>

namespace Orvane {

/// Fills the column `target` of every section with (X op1 Y) op2 C, event by event.
///
/// X, the left operand, and Y, the right one, are each a column (`a`, `b`: its signal index) or an integer
/// constant (`e`); C is the constant `c`. The operators are in the name: CalcSignalValue_A_SUB_B_DIV_C
/// writes (A - B) / C. Both steps are done in double and the result is narrowed to float. A zero divisor
/// gives infinities and NaN, which are stored.
///
/// The target may be an operand column. The first `Count` values of each section are written and nothing
/// else; nothing is checked or thrown.
class ORVANE_API IOVCustomSignal {
public:
    using Events = std::vector<EventSection*>;  ///< the sections of a sample, in order

    virtual ~IOVCustomSignal() = default;

    /// (A op1 B) op2 C: both operands are columns.
    virtual void CalcSignalValue_A_ADD_B_MUL_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_SUB_B_MUL_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_MUL_B_MUL_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_DIV_B_MUL_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_ADD_B_DIV_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_SUB_B_DIV_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_MUL_B_DIV_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_DIV_B_DIV_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_ADD_B_ADD_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_SUB_B_ADD_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_MUL_B_ADD_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_DIV_B_ADD_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_ADD_B_SUB_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_SUB_B_SUB_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_MUL_B_SUB_C(Events& sections, int target, int a, int b, float c) = 0;
    virtual void CalcSignalValue_A_DIV_B_SUB_C(Events& sections, int target, int a, int b, float c) = 0;

    /// (E op1 B) op2 C: the left operand is a constant.
    virtual void CalcSignalValue_E_ADD_B_MUL_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_SUB_B_MUL_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_MUL_B_MUL_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_DIV_B_MUL_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_ADD_B_DIV_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_SUB_B_DIV_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_MUL_B_DIV_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_DIV_B_DIV_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_ADD_B_ADD_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_SUB_B_ADD_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_MUL_B_ADD_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_DIV_B_ADD_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_ADD_B_SUB_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_SUB_B_SUB_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_MUL_B_SUB_C(Events& sections, int target, int e, int b, float c) = 0;
    virtual void CalcSignalValue_E_DIV_B_SUB_C(Events& sections, int target, int e, int b, float c) = 0;

    /// (A op1 E) op2 C: the right operand is a constant.
    virtual void CalcSignalValue_A_ADD_E_MUL_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_SUB_E_MUL_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_MUL_E_MUL_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_DIV_E_MUL_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_ADD_E_DIV_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_SUB_E_DIV_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_MUL_E_DIV_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_DIV_E_DIV_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_ADD_E_ADD_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_SUB_E_ADD_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_MUL_E_ADD_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_DIV_E_ADD_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_ADD_E_SUB_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_SUB_E_SUB_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_MUL_E_SUB_C(Events& sections, int target, int a, int e, float c) = 0;
    virtual void CalcSignalValue_A_DIV_E_SUB_C(Events& sections, int target, int a, int e, float c) = 0;

    /// (E op1 E) op2 C: the constant is both operands
    /// Every event gets the same value. E - E is 0 and E / E is 1 whatever E is, and the second step is then
    /// done in float: SUB..MUL and SUB..DIV write 0 whatever C is, SUB..ADD writes C, SUB..SUB -C, DIV..MUL
    /// C, DIV..DIV 1 / C, DIV..ADD C + 1 and DIV..SUB 1 - C.
    virtual void CalcSignalValue_E_ADD_E_MUL_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_SUB_E_MUL_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_MUL_E_MUL_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_DIV_E_MUL_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_ADD_E_DIV_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_SUB_E_DIV_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_MUL_E_DIV_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_DIV_E_DIV_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_ADD_E_ADD_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_SUB_E_ADD_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_MUL_E_ADD_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_DIV_E_ADD_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_ADD_E_SUB_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_SUB_E_SUB_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_MUL_E_SUB_C(Events& sections, int target, int e, float c) = 0;
    virtual void CalcSignalValue_E_DIV_E_SUB_C(Events& sections, int target, int e, float c) = 0;
};

/// The operations of IOVCustomSignal. An object holds nothing; make one wherever it is needed.
class ORVANE_API OVCustomSignal : public IOVCustomSignal {
public:
    void CalcSignalValue_A_ADD_B_MUL_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_SUB_B_MUL_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_MUL_B_MUL_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_DIV_B_MUL_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_ADD_B_DIV_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_SUB_B_DIV_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_MUL_B_DIV_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_DIV_B_DIV_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_ADD_B_ADD_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_SUB_B_ADD_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_MUL_B_ADD_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_DIV_B_ADD_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_ADD_B_SUB_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_SUB_B_SUB_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_MUL_B_SUB_C(Events& sections, int target, int a, int b, float c) override;
    void CalcSignalValue_A_DIV_B_SUB_C(Events& sections, int target, int a, int b, float c) override;

    void CalcSignalValue_E_ADD_B_MUL_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_SUB_B_MUL_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_MUL_B_MUL_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_DIV_B_MUL_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_ADD_B_DIV_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_SUB_B_DIV_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_MUL_B_DIV_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_DIV_B_DIV_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_ADD_B_ADD_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_SUB_B_ADD_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_MUL_B_ADD_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_DIV_B_ADD_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_ADD_B_SUB_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_SUB_B_SUB_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_MUL_B_SUB_C(Events& sections, int target, int e, int b, float c) override;
    void CalcSignalValue_E_DIV_B_SUB_C(Events& sections, int target, int e, int b, float c) override;

    void CalcSignalValue_A_ADD_E_MUL_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_SUB_E_MUL_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_MUL_E_MUL_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_DIV_E_MUL_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_ADD_E_DIV_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_SUB_E_DIV_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_MUL_E_DIV_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_DIV_E_DIV_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_ADD_E_ADD_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_SUB_E_ADD_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_MUL_E_ADD_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_DIV_E_ADD_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_ADD_E_SUB_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_SUB_E_SUB_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_MUL_E_SUB_C(Events& sections, int target, int a, int e, float c) override;
    void CalcSignalValue_A_DIV_E_SUB_C(Events& sections, int target, int a, int e, float c) override;

    void CalcSignalValue_E_ADD_E_MUL_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_SUB_E_MUL_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_MUL_E_MUL_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_DIV_E_MUL_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_ADD_E_DIV_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_SUB_E_DIV_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_MUL_E_DIV_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_DIV_E_DIV_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_ADD_E_ADD_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_SUB_E_ADD_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_MUL_E_ADD_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_DIV_E_ADD_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_ADD_E_SUB_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_SUB_E_SUB_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_MUL_E_SUB_C(Events& sections, int target, int e, float c) override;
    void CalcSignalValue_E_DIV_E_SUB_C(Events& sections, int target, int e, float c) override;
};

}  // namespace Orvane
