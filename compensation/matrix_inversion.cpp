// OVMatrix: determinant, adjugate and inverse.
#include <orvane/OVMatrix.h>

#include <cassert>
#include <cmath>
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
          usedRows_(matrix.GetRowNum()),
          usedColumns_(matrix.GetRowNum()),
          columnOfRow_(matrix.GetRowNum()),
          rowOfColumn_(matrix.GetRowNum()) {
        std::iota(columnOfRow_.begin(), columnOfRow_.end(), 0);
        std::iota(rowOfColumn_.begin(), rowOfColumn_.end(), 0);
    }

    void Step() {
        FindPivot();
        for (int row = 0; row < Size(); ++row) {
            if (row != row_) EliminateFrom(row);
        }
        for (int column = 0; column < Size(); ++column) {
            if (column != column_) table_.SetValue(row_, column, -table_.GetValue(row_, column) / pivot_);
        }
        table_.SetValue(row_, column_, 1.0 / pivot_);
    }

    /// The inverse, rows and columns back in their first order. A singular matrix leaves no finite element.
    OVMatrix Result() const {
        OVMatrix inverse(table_);
        for (int row = 0; row < Size(); ++row) {
            for (int column = 0; column < Size(); ++column) {
                inverse.SetValue(columnOfRow_[row], rowOfColumn_[column], table_.GetValue(row, column));
            }
        }
        return inverse;
    }

private:
    int Size() const { return table_.GetRowNum(); }

    /// The largest element outside the used rows and columns, the first one of equals. Deliberate: when all
    /// of them are 0 the last position stays, and the pivot 0 turns the whole table into infinities and NaN.
    void FindPivot() {
        pivot_ = 0.0;
        for (int row = 0; row < Size(); ++row) {
            if (usedRows_[row]) continue;
            for (int column = 0; column < Size(); ++column) {
                if (usedColumns_[column]) continue;
                const double value = table_.GetValue(row, column);
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

    void EliminateFrom(int row) {
        const double factor = table_.GetValue(row, column_) / pivot_;
        table_.SetValue(row, column_, factor);
        for (int column = 0; column < Size(); ++column) {
            if (column == column_) continue;
            const double value = table_.GetValue(row, column);
            table_.SetValue(row, column, value - table_.GetValue(row_, column) * factor);
        }
    }

    OVMatrix table_;
    std::vector<bool> usedRows_;
    std::vector<bool> usedColumns_;
    std::vector<int> columnOfRow_;
    std::vector<int> rowOfColumn_;
    int row_ = 0;
    int column_ = 0;
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
