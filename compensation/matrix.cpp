// OVMatrix: storage, elements and arithmetic.
#include <orvane/OVMatrix.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <utility>

namespace Orvane {
namespace {

std::unique_ptr<double[]> NewElements(int rows, int columns) {
    assert(rows >= 0 && columns >= 0);
    const std::size_t count = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns);
    return count == 0 ? nullptr : std::make_unique<double[]>(count);
}

void Require(bool fits) {
    if (!fits) throw "Matrix dimensions do not match.";
}

/// 10 to the power of `exponent`, which is not negative, by repeated squaring: exact up to 10^22.
double PowerOfTen(int exponent) {
    double power = 1.0;
    double square = 10.0;
    for (; exponent > 0; exponent /= 2) {
        if (exponent % 2 == 1) power *= square;
        square *= square;
    }
    return power;
}

}  // namespace

OVMatrix::OVMatrix() = default;

OVMatrix::OVMatrix(int rows, int columns) {
    Resize(rows, columns);
}

OVMatrix::OVMatrix(double* values, int rows, int columns) {
    Resize(rows, columns);
    std::copy_n(values, Size(), data_.get());
}

OVMatrix::OVMatrix(const OVMatrix& other) {
    Copy(other);
}

OVMatrix::OVMatrix(OVMatrix&& other) noexcept
    : rows_(std::exchange(other.rows_, 0)),
      columns_(std::exchange(other.columns_, 0)),
      data_(std::move(other.data_)) {}

OVMatrix& OVMatrix::operator=(const OVMatrix& other) {
    if (this != &other) Copy(other);
    return *this;
}

OVMatrix& OVMatrix::operator=(OVMatrix&& other) noexcept {
    OVMatrix taken(std::move(other));
    std::swap(rows_, taken.rows_);
    std::swap(columns_, taken.columns_);
    std::swap(data_, taken.data_);
    return *this;
}

OVMatrix::~OVMatrix() = default;

void OVMatrix::Copy(const OVMatrix& other) {
    Resize(other.rows_, other.columns_);
    std::copy_n(other.data_.get(), Size(), data_.get());
}

void OVMatrix::InitMatrix(int rows, int columns) {
    Resize(rows, columns);
    Zero();
}

int OVMatrix::Size() const {
    return rows_ * columns_;
}

void OVMatrix::Resize(int rows, int columns) {
    if (rows == rows_ && columns == columns_ && data_ != nullptr) return;
    data_ = NewElements(rows, columns);
    rows_ = rows;
    columns_ = columns;
}

int OVMatrix::GetRowNum() const {
    return rows_;
}

void OVMatrix::SetRowNum(int rows) {
    rows_ = rows;
}

int OVMatrix::GetColumnNum() const {
    return columns_;
}

void OVMatrix::SetColumnNum(int columns) {
    columns_ = columns;
}

double* OVMatrix::GetData() const {
    return data_.get();
}

double OVMatrix::GetValue(int row, int column) const {
    assert(row >= 0 && row < rows_ && column >= 0 && column < columns_);
    return data_.get()[row * columns_ + column];
}

void OVMatrix::SetValue(int row, int column, double value) {
    assert(row >= 0 && row < rows_ && column >= 0 && column < columns_);
    data_.get()[row * columns_ + column] = value;
}

void OVMatrix::Zero() {
    std::fill_n(data_.get(), Size(), 0.0);
}

void OVMatrix::Identity() {
    Zero();
    for (int i = 0; i < std::min(rows_, columns_); ++i) {
        SetValue(i, i, 1.0);
    }
}

OVMatrix OVMatrix::Transpose() const {
    OVMatrix result(columns_, rows_);
    for (int row = 0; row < rows_; ++row) {
        for (int column = 0; column < columns_; ++column) {
            result.SetValue(column, row, GetValue(row, column));
        }
    }
    return result;
}

OVMatrix OVMatrix::Block(int row, int column, int rows, int columns) const {
    OVMatrix block(rows, columns);
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) {
            block.SetValue(i, j, GetValue(row + i, column + j));
        }
    }
    return block;
}

OVMatrix OVMatrix::GetRow(int row) const {
    // Deliberate: no full stop, unlike the message for columns. Hosts compare the text.
    if (row < 0 || row >= rows_) throw "No this row";
    return Block(row, 0, 1, columns_);
}

OVMatrix OVMatrix::GetColumn(int column) const {
    if (column < 0 || column >= columns_) throw "No this column.";
    return Block(0, column, rows_, 1);
}

OVMatrix OVMatrix::operator+(OVMatrix other) const {
    Require(rows_ == other.rows_ && columns_ == other.columns_);
    std::transform(data_.get(), data_.get() + Size(), other.data_.get(), other.data_.get(), std::plus<>());
    return other;
}

OVMatrix OVMatrix::operator-(OVMatrix other) const {
    Require(rows_ == other.rows_ && columns_ == other.columns_);
    std::transform(data_.get(), data_.get() + Size(), other.data_.get(), other.data_.get(), std::minus<>());
    return other;
}

OVMatrix OVMatrix::operator*(double factor) const {
    OVMatrix result(*this);
    for (int i = 0; i < Size(); ++i) {
        result.data_.get()[i] *= factor;
    }
    return result;
}

OVMatrix OVMatrix::operator/(double divisor) const {
    OVMatrix result(*this);
    for (int i = 0; i < Size(); ++i) {
        result.data_.get()[i] /= divisor;
    }
    return result;
}

// The exported signatures take their operands by value.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
OVMatrix OVMatrix::operator*(OVMatrix other) const {
    Require(columns_ == other.rows_);
    OVMatrix product(rows_, other.columns_);
    for (int row = 0; row < rows_; ++row) {
        for (int column = 0; column < other.columns_; ++column) {
            double sum = 0.0;
            for (int k = 0; k < columns_; ++k) {
                sum += GetValue(row, k) * other.GetValue(k, column);
            }
            product.SetValue(row, column, sum);
        }
    }
    return product;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param)
OVMatrix OVMatrix::MultyMatrix(OVMatrix a, OVMatrix b) const {
    return a * std::move(b);
}

bool OVMatrix::IsEquals(const OVMatrix& other) const {
    return rows_ == other.rows_ && columns_ == other.columns_ && IsEquals(other, 10);
}

bool OVMatrix::IsEquals(const OVMatrix& other, int precision) const {
    if (precision < 0) throw "Precision cannot be negative.";
    const double tolerance = 1.0 / PowerOfTen(precision);
    if (tolerance < std::numeric_limits<double>::epsilon()) throw "High precision, no support.";
    // Deliberate: the sizes are not compared, and a NaN on either side differs from nothing.
    for (int i = 0; i < Size(); ++i) {
        if (std::abs(data_.get()[i] - other.data_.get()[i]) >= tolerance) return false;
    }
    return true;
}

}  // namespace Orvane
