// Linear systems with a symmetric matrix.
#pragma once

#include <cstddef>
#include <vector>

namespace tarnis::analysis {

/// A symmetric positive definite matrix without its held rows and columns, scaled to a unit diagonal, as a product of
/// triangular matrices by Cholesky: the pivots show how close to singular it is. An object can be used for several
/// matrices, and then allocates once.
class FactoredMatrix {
public:
    /// a: row-major; held: one for each row. False: the matrix is singular, and the functions below must not be called.
    bool factorise(const std::vector<double>& a, const std::vector<char>& held);
    /// The solution of a x = b, zero where held.
    void solve(const std::vector<double>& b, std::vector<double>& x);
    /// The inverse, row-major, zero in held rows and columns.
    void invert(std::vector<double>& inverse);

private:
    double& entry(std::size_t i, std::size_t k) { return m_entries[i * m_free.size() + k]; }
    void substitute();

    std::size_t m_all = 0;
    std::vector<std::size_t> m_free;
    std::vector<double> m_scale;
    std::vector<double> m_entries; ///< the lower triangle, with the inverse of its diagonal
    std::vector<double> m_vector; ///< of substitute()
};

} // namespace tarnis::analysis
