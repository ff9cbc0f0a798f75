// The loops of the custom signals.
#pragma once

#include "foundation/instruction_set.h"

namespace Orvane {

enum class Operator { Add, Subtract, Multiply, Divide };

ORVANE_KERNEL_INLINE double Apply(Operator step, double left, double right) {
    switch (step) {
        case Operator::Add:
            return left + right;
        case Operator::Subtract:
            return left - right;
        case Operator::Multiply:
            return left * right;
        default:
            return left / right;
    }
}

/// (X First Y) Second C
struct CustomFormula {
    Operator First;
    Operator Second;
    float C;
};

/// target[e] = (x[e] First y[e]) Second C in double, narrowed to float. An operand is a column or a number;
/// the target may be an operand.
void CalcColumn(const CustomFormula& formula, const float* x, const float* y, int count, float* target);
void CalcColumn(const CustomFormula& formula, double x, const float* y, int count, float* target);
void CalcColumn(const CustomFormula& formula, const float* x, double y, int count, float* target);

}  // namespace Orvane
