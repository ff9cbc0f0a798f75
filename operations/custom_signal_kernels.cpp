#include "operations/custom_signal_kernels.h"

#include <algorithm>

namespace Orvane {
namespace {

ORVANE_KERNEL_INLINE double ValueAt(const float* column, int e) {
    return static_cast<double>(column[e]);
}
ORVANE_KERNEL_INLINE double ValueAt(double constant, int /*e*/) {
    return constant;
}

template <Operator First, class X, class Y>
ORVANE_KERNEL_INLINE void TakeFirstStep(X x, Y y, int begin, int count, double* results) {
    for (int e = 0; e < count; ++e)
        results[e] = Apply(First, ValueAt(x, begin + e), ValueAt(y, begin + e));
}

template <Operator Second>
ORVANE_KERNEL_INLINE void TakeSecondStep(const double* results, double c, int count, float* target) {
    for (int e = 0; e < count; ++e)
        target[e] = static_cast<float>(Apply(Second, results[e], c));
}

template <class X, class Y>
ORVANE_KERNEL_INLINE void TakeFirstStep(Operator first, X x, Y y, int begin, int count, double* results) {
    switch (first) {
        case Operator::Add:
            return TakeFirstStep<Operator::Add>(x, y, begin, count, results);
        case Operator::Subtract:
            return TakeFirstStep<Operator::Subtract>(x, y, begin, count, results);
        case Operator::Multiply:
            return TakeFirstStep<Operator::Multiply>(x, y, begin, count, results);
        case Operator::Divide:
            return TakeFirstStep<Operator::Divide>(x, y, begin, count, results);
    }
}

ORVANE_KERNEL_INLINE void TakeSecondStep(Operator second, const double* results, double c, int count,
                                         float* target) {
    switch (second) {
        case Operator::Add:
            return TakeSecondStep<Operator::Add>(results, c, count, target);
        case Operator::Subtract:
            return TakeSecondStep<Operator::Subtract>(results, c, count, target);
        case Operator::Multiply:
            return TakeSecondStep<Operator::Multiply>(results, c, count, target);
        case Operator::Divide:
            return TakeSecondStep<Operator::Divide>(results, c, count, target);
    }
}

/// The steps are passes of their own over a stretch that stays in the cache: that takes eight loops, not
/// sixteen, and the compiler need not fear that operands are overwritten before they are read.
template <class X, class Y>
ORVANE_KERNEL_INLINE void CalcColumnBody(const CustomFormula& formula, X x, Y y, int count, float* target) {
    constexpr int Stretch = 512;
    double results[Stretch];
    const auto c = static_cast<double>(formula.C);
    for (int begin = 0; begin < count; begin += Stretch) {
        const int events = std::min(Stretch, count - begin);
        TakeFirstStep(formula.First, x, y, begin, events, results);
        TakeSecondStep(formula.Second, results, c, events, target + begin);
    }
}

}  // namespace

ORVANE_MULTIVERSION(void, CalcColumn,
                    (const CustomFormula& formula, const float* x, const float* y, int count, float* target),
                    (formula, x, y, count, target))
ORVANE_MULTIVERSION(void, CalcColumn,
                    (const CustomFormula& formula, double x, const float* y, int count, float* target),
                    (formula, x, y, count, target))
ORVANE_MULTIVERSION(void, CalcColumn,
                    (const CustomFormula& formula, const float* x, double y, int count, float* target),
                    (formula, x, y, count, target))

}  // namespace Orvane
