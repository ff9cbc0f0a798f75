// Small dense matrices of doubles, as spill-over compensation needs them.
#pragma once

#include <memory>

#include <orvane/Platform.h>

namespace Orvane {

/// A matrix of doubles in row-major order, copied deeply.
///
/// Indices are not checked, except by GetRow and GetColumn. What does not fit is reported by throwing the
/// bare text (`const char*`): "Matrix dimensions do not match." and the ones stated below.
class ORVANE_API OVMatrix {
public:
    /// A 0 x 0 matrix without data.
    OVMatrix();
    /// Zeros.
    OVMatrix(int rows, int columns);
    /// A copy of `rows * columns` values, row by row.
    OVMatrix(double* values, int rows, int columns);
    /// A copy with data of its own.
    OVMatrix(const OVMatrix& other);
    /// Leaves `other` 0 x 0.
    OVMatrix(OVMatrix&& other) noexcept;
    /// Becomes a copy, as by Copy.
    OVMatrix& operator=(const OVMatrix& other);
    /// Leaves `other` 0 x 0.
    OVMatrix& operator=(OVMatrix&& other) noexcept;
    ~OVMatrix();

    /// Becomes a copy of `other`. The data stay where they are when both counts agree.
    void Copy(const OVMatrix& other);
    /// Becomes a zero matrix of the given size. The data stay where they are when both counts agree.
    void InitMatrix(int rows, int columns);

    /// The number of rows.
    int GetRowNum() const;
    /// Overwrites the count only; the data stay as they are.
    void SetRowNum(int rows);
    /// The number of columns.
    int GetColumnNum() const;
    /// Overwrites the count only; the data stay as they are.
    void SetColumnNum(int columns);
    /// The elements, row by row; null for an empty matrix. They belong to the matrix.
    double* GetData() const;
    /// One element, not range-checked.
    double GetValue(int row, int column) const;
    void SetValue(int row, int column, double value);

    /// Sets every element to 0.
    void Zero();
    /// Sets the diagonal to 1 and everything else to 0.
    void Identity();

    /// The matrix with rows and columns exchanged.
    OVMatrix Transpose() const;
    /// Row `row` as a matrix of one row. Throws "No this row" when there is none.
    OVMatrix GetRow(int row) const;
    /// Column `column` as a matrix of one column. Throws "No this column." when there is none.
    OVMatrix GetColumn(int column) const;

    /// Throws when the sizes differ.
    OVMatrix operator+(OVMatrix other) const;
    /// Throws when the sizes differ.
    OVMatrix operator-(OVMatrix other) const;
    /// Every element times `factor`.
    OVMatrix operator*(double factor) const;
    /// A zero divisor gives infinities and NaN.
    OVMatrix operator/(double divisor) const;
    /// The matrix product. Throws unless this matrix has as many columns as `other` has rows.
    OVMatrix operator*(OVMatrix other) const;
    /// The product `a` x `b`, as `a * b`.
    OVMatrix MultyMatrix(OVMatrix a, OVMatrix b) const;

    /// Whether the sizes agree and every element within 10^-10.
    bool IsEquals(const OVMatrix& other) const;
    /// Whether every element differs from the one at the same place in the data of `other` by less than
    /// 10^-precision; a NaN differs from nothing. The sizes are not compared: `other` must hold at least as
    /// many elements. Throws "Precision cannot be negative.", and "High precision, no support." for
    /// 16 and above.
    bool IsEquals(const OVMatrix& other, int precision) const;

    /// Whether the matrix is square and not empty.
    bool IsCanDeterminant() const;
    /// The determinant; 0 for an empty matrix. Throws when the matrix is not square.
    ///
    /// Up to 3 x 3 by the direct formulas. From 4 x 4 on the matrix is cut into blocks A B / C D, A with half
    /// the rows (rounded down): det(A) det(D - C A^-1 B), or det(D) det(A - B D^-1 C) when det(A) is 0. When
    /// both are 0 the result is 0, also for a regular matrix.
    double Determinant() const;
    /// `index` wrapped into the rows: -1 is the last one. The matrix must have rows.
    int FindIndex(int index) const;
    /// A copy without one row and one column.
    OVMatrix Subspace(int row, int column) const;
    /// The adjugate: element (j, i) is (-1)^(i + j) times the determinant without row i and column j. For 1 x
    /// 1 that is the determinant of an empty matrix, 0.
    OVMatrix Adjoint() const;
    /// The inverse by complete pivoting. The matrix must be square; a singular one gives infinities and NaN.
    OVMatrix Invert() const;

private:
    int Size() const;
    void Resize(int rows, int columns);
    OVMatrix Block(int row, int column, int rows, int columns) const;
    double DeterminantOf3() const;
    double DeterminantByBlocks() const;

    int rows_ = 0;
    int columns_ = 0;
    std::unique_ptr<double[]> data_;
};

}  // namespace Orvane
