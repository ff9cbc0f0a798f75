// Matrices: the block rule of the determinant, inversion, comparison, ownership, messages.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include <orvane/OVMatrix.h>

#include "tests/support/exceptions.h"

namespace Orvane {
namespace {

OVMatrix Matrix(int rows, int columns, std::vector<double> values) {
    return OVMatrix(values.data(), rows, columns);
}

template <class Draw>
OVMatrix RandomMatrix(int size, Draw draw) {
    OVMatrix matrix(size, size);
    for (int i = 0; i < size * size; ++i)
        matrix.GetData()[i] = draw();
    return matrix;
}

OVMatrix IdentityOf(int size) {
    OVMatrix identity(size, size);
    identity.Identity();
    return identity;
}

double DeterminantByFirstRow(const OVMatrix& matrix) {
    if (matrix.GetRowNum() == 1) return matrix.GetValue(0, 0);
    double sum = 0.0;
    for (int j = 0; j < matrix.GetColumnNum(); ++j) {
        const double term = matrix.GetValue(0, j) * DeterminantByFirstRow(matrix.Subspace(0, j));
        sum += j % 2 == 0 ? term : -term;
    }
    return sum;
}

double DeterminantOfCorner(OVMatrix matrix, int size, bool upperLeft) {
    while (matrix.GetRowNum() > size) {
        const int outer = upperLeft ? matrix.GetRowNum() - 1 : 0;
        matrix = matrix.Subspace(outer, outer);
    }
    return DeterminantByFirstRow(matrix);
}

TEST(Matrix, DeterminantIsTheTrueOneUnlessBothDiagonalBlocksAreSingular) {
    std::mt19937 random(1);
    int exceptions = 0;
    for (int round = 0; round < 600; ++round) {
        const int size = 1 + round % 6;
        const OVMatrix matrix = RandomMatrix(size, [&] { return static_cast<int>(random() % 5) - 2.0; });
        const int half = size / 2;
        double expected = DeterminantByFirstRow(matrix);
        if (size >= 4 && DeterminantOfCorner(matrix, half, true) == 0.0 &&
            DeterminantOfCorner(matrix, size - half, false) == 0.0) {
            exceptions += expected != 0.0 ? 1 : 0;
            expected = 0.0;
        }
        ASSERT_NEAR(matrix.Determinant(), expected, 1e-9) << "size " << size << ", round " << round;
    }
    EXPECT_GT(exceptions, 0);
    EXPECT_EQ(OVMatrix().Determinant(), 0.0);
    // Blocks of blocks: the determinant of a product is the product of the determinants.
    const auto draw = [&] { return static_cast<double>(random() % 1000) / 500.0 - 1.0; };
    const OVMatrix a = RandomMatrix(13, draw), b = RandomMatrix(13, draw);
    EXPECT_NEAR((a * b).Determinant() / (a.Determinant() * b.Determinant()), 1.0, 1e-9);
    // A determinant that is NaN counts as not zero, so that the second block is not asked.
    OVMatrix withNaN = IdentityOf(4);
    withNaN.SetValue(0, 0, std::nan(""));
    EXPECT_TRUE(std::isnan(withNaN.Determinant()));
}

TEST(Matrix, InverseTimesMatrixIsIdentityAlsoForPermutedAndBadlyScaledOnes) {
    std::mt19937 random(2);
    for (int size = 1; size <= 24; ++size) {
        OVMatrix matrix = RandomMatrix(size, [&] { return static_cast<double>(random() % 2001) - 1000.0; });
        EXPECT_TRUE((matrix.Invert() * matrix).IsEquals(IdentityOf(size), 8)) << size;
        for (int i = 0; i < size * size; ++i)
            matrix.GetData()[i] *= std::pow(10.0, i / size % 7 * 2 - 6);
        EXPECT_TRUE((matrix.Invert() * matrix).IsEquals(IdentityOf(size), 5)) << size << ", rows scaled";
        OVMatrix cycle(size, size);
        for (int i = 0; i < size; ++i)
            cycle.SetValue(i, (i + size / 2 + 1) % size, 1.0);
        EXPECT_TRUE(cycle.Invert().IsEquals(cycle.Transpose(), 15)) << size << ", permuted";
    }
}

TEST(Matrix, Arithmetic) {
    const OVMatrix a = Matrix(2, 3, {1, 2, 3, 4, 5, 6}), b = Matrix(3, 2, {7, 8, 9, 10, 11, 12});
    EXPECT_TRUE((a * b).IsEquals(Matrix(2, 2, {58, 64, 139, 154})));
    EXPECT_TRUE(a.MultyMatrix(b, a).IsEquals(b * a));
    EXPECT_TRUE((a + a - a * 3.0).IsEquals(a / -1.0));
    EXPECT_TRUE(a.Transpose().GetRow(1).Transpose().IsEquals(a.GetColumn(1)));
    const OVMatrix square = Matrix(3, 3, {2, 0, 1, 3, 5, 7, 1, 1, 4});
    EXPECT_TRUE((square.Adjoint() * square).IsEquals(IdentityOf(3) * square.Determinant()));
    EXPECT_EQ(Matrix(1, 1, {5}).Adjoint().GetValue(0, 0), 0.0) << "the determinant of an empty matrix";
    EXPECT_EQ(b.FindIndex(-1), 2);
    EXPECT_EQ(b.FindIndex(4), 1);
}

TEST(Matrix, EqualityIsExclusiveAtItsPrecision) {
    const OVMatrix zero(1, 2);
    EXPECT_FALSE(zero.IsEquals(Matrix(1, 2, {0, 0.001}), 3));
    EXPECT_TRUE(zero.IsEquals(Matrix(1, 2, {0, std::nextafter(0.001, 0.0)}), 3));
    EXPECT_FALSE(zero.IsEquals(Matrix(1, 2, {-1e-15, 0}), 15));
    EXPECT_FALSE(zero.IsEquals(Matrix(1, 2, {1e-10, 0})));
    EXPECT_TRUE(zero.IsEquals(Matrix(1, 2, {std::nan(""), 0})));
    EXPECT_FALSE(zero.IsEquals(OVMatrix(2, 1)));
    EXPECT_TRUE(zero.IsEquals(OVMatrix(2, 1), 0));
    EXPECT_TRUE(OVMatrix().IsEquals(zero, 5));
}

TEST(Matrix, CopiesAreDeepAndMovesLeaveAnEmptyMatrix) {
    OVMatrix original = Matrix(2, 2, {1, 2, 3, 4}), copy = original;
    double* const data = copy.GetData();
    original.SetValue(0, 0, 9.0);
    EXPECT_EQ(copy.GetValue(0, 0), 1.0);
    copy.Copy(original);
    EXPECT_EQ(copy.GetData(), data) << "same size: the data stay where they are";
    OVMatrix moved = std::move(copy);
    // NOLINTNEXTLINE(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
    EXPECT_TRUE(copy.IsEquals(OVMatrix()) && copy.GetData() == nullptr);
    copy = std::move(moved);
    const OVMatrix& alias = copy;
    copy = alias;
    EXPECT_TRUE(copy.IsEquals(original));
    EXPECT_EQ(copy.GetData(), data);
    copy = OVMatrix();
    copy.SetRowNum(2);
    copy.SetColumnNum(2);
    copy.InitMatrix(2, 2);
    EXPECT_TRUE(copy.IsEquals(OVMatrix(2, 2))) << "counts without data still need data";
}

TEST(Matrix, WhatDoesNotFitIsReportedByTheBareText) {
    const OVMatrix wide(2, 3);
    const std::string dimensions = "Matrix dimensions do not match.";
    const std::vector<std::pair<std::function<void()>, std::string>> refusals{
        {[&] { wide.GetRow(2); }, "No this row"},
        {[&] { wide.GetRow(-1); }, "No this row"},
        {[&] { wide.GetColumn(3); }, "No this column."},
        {[&] { wide.GetColumn(-1); }, "No this column."},
        {[&] { wide + OVMatrix(2, 2); }, dimensions},
        {[&] { wide - OVMatrix(3, 3); }, dimensions},
        {[&] { wide* wide; }, dimensions},
        {[&] { wide.MultyMatrix(wide, wide); }, dimensions},
        {[&] { wide.Determinant(); }, dimensions},
        {[&] { wide.IsEquals(wide, -1); }, "Precision cannot be negative."},
        {[&] { wide.IsEquals(wide, 16); }, "High precision, no support."}};
    for (const auto& [operation, expected] : refusals)
        EXPECT_EQ(Testing::MessageOf<const char>(operation), expected);
}

}  // namespace
}  // namespace Orvane
