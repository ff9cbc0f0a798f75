// OVMatrix: determinant, adjugate and inverse.
#include <orvane/OVMatrix.h>

#include <cassert>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <vector>

namespace Orvane {
namespace {

/// Complete-pivoting Gauss-Jordan elimination in place. Each step solves the equation of the pivot's row for
/// the pivot's column, so that in the end row r of the table gives the unknown ColumnOf(r) and column c takes
/// the right-hand side RowOf(c).
class Elimination {
public:
    explicit Elimination(const OVMatrix& matrix)
        : table_(matrix),
          size_(static_cast<std::size_t>(matrix.GetRowNum())),
          usedRows_(size_),
          usedColumns_(size_),
          columnOfRow_(size_),
          rowOfColumn_(size_) {
        std::iota(columnOfRow_.begin(), columnOfRow_.end(), std::size_t{0});
        std::iota(rowOfColumn_.begin(), rowOfColumn_.end(), std::size_t{0});
    }

    void Step() {
        FindPivot();
        for (std::size_t row = 0; row < size_; ++row) {
            if (row != row_) EliminateFrom(row);
        }
        for (std::size_t column = 0; column < size_; ++column) {
            if (column != column_) At(row_, column) = -At(row_, column) / pivot_;
        }
        At(row_, column_) = 1.0 / pivot_;
    }

    /// The inverse, rows and columns back in their first order. A singular matrix leaves no finite element.
    OVMatrix Result() {
        OVMatrix inverse(table_);
        for (std::size_t row = 0; row < size_; ++row) {
            for (std::size_t column = 0; column < size_; ++column) {
                inverse.GetData()[columnOfRow_[row] * size_ + rowOfColumn_[column]] = At(row, column);
            }
        }
        return inverse;
    }

private:
    double& At(std::size_t row, std::size_t column) { return table_.GetData()[row * size_ + column]; }

    /// The largest element outside the used rows and columns, the first one of equals. Deliberate: when all
    /// of them are 0 the last position stays, and the pivot 0 turns the whole table into infinities and NaN.
    void FindPivot() {
        pivot_ = 0.0;
        for (std::size_t row = 0; row < size_; ++row) {
            if (usedRows_[row]) continue;
            for (std::size_t column = 0; column < size_; ++column) {
                if (usedColumns_[column]) continue;
                const double value = At(row, column);
                if (std::abs(value) > std::abs(pivot_)) {
                    pivot_ = value;
                    row_ = row;
                    column_ = column;
                }
            }
        }
        usedRows_[row_] = true;
        usedColumns_[column_] = true;
        columnOfRow_[row_] = column_;
        rowOfColumn_[column_] = row_;
    }

    void EliminateFrom(std::size_t row) {
        const double factor = At(row, column_) / pivot_;
        At(row, column_) = factor;
        for (std::size_t column = 0; column < size_; ++column) {
            if (column != column_) At(row, column) -= At(row_, column) * factor;
        }
    }

    OVMatrix table_;
    std::size_t size_;
    std::vector<bool> usedRows_;
    std::vector<bool> usedColumns_;
    std::vector<std::size_t> columnOfRow_;
    std::vector<std::size_t> rowOfColumn_;
    std::size_t row_ = 0;
    std::size_t column_ = 0;
    double pivot_ = 0.0;
};

}  // namespace

bool OVMatrix::IsCanDeterminant() const {
    return rows_ == columns_ && rows_ >= 1;
}

double OVMatrix::Determinant() const {
    if (rows_ != columns_) throw "Matrix dimensions do not match.";
    switch (rows_) {
        case 0:
            return 0.0;
        case 1:
            return GetValue(0, 0);
        case 2:
            return GetValue(0, 0) * GetValue(1, 1) - GetValue(0, 1) * GetValue(1, 0);
        case 3:
            return DeterminantOf3();
        default:
            return DeterminantByBlocks();
    }
}

/// The rule of Sarrus.
double OVMatrix::DeterminantOf3() const {
    double falling = 0.0;
    double rising = 0.0;
    for (int i = 0; i < 3; ++i) {
        falling += GetValue(0, i) * GetValue(1, FindIndex(i + 1)) * GetValue(2, FindIndex(i + 2));
        rising += GetValue(0, i) * GetValue(1, FindIndex(i - 1)) * GetValue(2, FindIndex(i - 2));
    }
    return falling - rising;
}

double OVMatrix::DeterminantByBlocks() const {
    const int half = rows_ / 2;
    const int rest = rows_ - half;
    const OVMatrix a = Block(0, 0, half, half);
    const OVMatrix b = Block(0, half, half, rest);
    const OVMatrix c = Block(half, 0, rest, half);
    const OVMatrix d = Block(half, half, rest, rest);
    const double ofA = a.Determinant();
    if (ofA != 0.0) return ofA * (d - c * a.Invert() * b).Determinant();
    const double ofD = d.Determinant();
    if (ofD != 0.0) return ofD * (a - b * d.Invert() * c).Determinant();
    // Deliberate: also for a regular matrix, such as one whose two diagonal blocks are zero.
    return 0.0;
}

int OVMatrix::FindIndex(int index) const {
    assert(rows_ > 0);
    const int rest = index % rows_;
    return rest < 0 ? rest + rows_ : rest;
}

OVMatrix OVMatrix::Subspace(int row, int column) const {
    OVMatrix minor(rows_ - 1, columns_ - 1);
    for (int i = 0; i < minor.rows_; ++i) {
        for (int j = 0; j < minor.columns_; ++j) {
            minor.SetValue(i, j, GetValue(i < row ? i : i + 1, j < column ? j : j + 1));
        }
    }
    return minor;
}

OVMatrix OVMatrix::Adjoint() const {
    OVMatrix adjugate(columns_, rows_);
    for (int i = 0; i < rows_; ++i) {
        for (int j = 0; j < columns_; ++j) {
            const double determinant = Subspace(i, j).Determinant();
            adjugate.SetValue(j, i, (i + j) % 2 == 0 ? determinant : -determinant);
        }
    }
    return adjugate;
}

OVMatrix OVMatrix::Invert() const {
    assert(rows_ == columns_);
    Elimination elimination(*this);
    for (int step = 0; step < rows_; ++step) {
        elimination.Step();
    }
    return elimination.Result();
}

}  // namespace Orvane
