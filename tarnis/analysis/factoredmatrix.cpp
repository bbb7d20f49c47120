#include "tarnis/analysis/factoredmatrix_p.h"

#include <algorithm>
#include <cmath>

namespace tarnis::analysis {

bool FactoredMatrix::factorise(const std::vector<double>& a, const std::vector<char>& held)
{
    m_all = held.size();
    m_free.clear();
    for (std::size_t j = 0; j < m_all; ++j) {
        if (!held[j])
            m_free.push_back(j);
    }
    const std::size_t n = m_free.size();
    m_scale.resize(n);
    m_vector.resize(n);
    m_entries.resize(n * n);
    for (std::size_t i = 0; i < n; ++i) {
        const double diagonal = a[m_free[i] * m_all + m_free[i]];
        if (!(diagonal > 0.0) || std::isinf(diagonal))
            return false;
        m_scale[i] = 1.0 / std::sqrt(diagonal);
    }
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            double sum = a[m_free[i] * m_all + m_free[j]] * m_scale[i] * m_scale[j];
            for (std::size_t k = 0; k < j; ++k)
                sum -= entry(i, k) * entry(j, k);
            if (i != j) {
                entry(i, j) = sum * entry(j, j);
                continue;
            }
            if (!(sum > 1e-13))
                return false;
            entry(i, i) = 1.0 / std::sqrt(sum);
        }
    }
    return true;
}

// Replaces m_vector by the solution of the scaled system.
void FactoredMatrix::substitute()
{
    const std::size_t n = m_vector.size();
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t k = 0; k < i; ++k)
            m_vector[i] -= entry(i, k) * m_vector[k];
        m_vector[i] *= entry(i, i);
    }
    for (std::size_t i = n; i-- > 0;) {
        for (std::size_t k = i + 1; k < n; ++k)
            m_vector[i] -= entry(k, i) * m_vector[k];
        m_vector[i] *= entry(i, i);
    }
}

void FactoredMatrix::solve(const std::vector<double>& b, std::vector<double>& x)
{
    for (std::size_t i = 0; i < m_free.size(); ++i)
        m_vector[i] = m_scale[i] * b[m_free[i]];
    substitute();
    x.assign(m_all, 0.0);
    for (std::size_t i = 0; i < m_free.size(); ++i)
        x[m_free[i]] = m_scale[i] * m_vector[i];
}

void FactoredMatrix::invert(std::vector<double>& inverse)
{
    inverse.assign(m_all * m_all, 0.0);
    for (std::size_t j = 0; j < m_free.size(); ++j) {
        std::fill(m_vector.begin(), m_vector.end(), 0.0);
        m_vector[j] = 1.0;
        substitute();
        for (std::size_t i = 0; i < m_free.size(); ++i)
            inverse[m_free[i] * m_all + m_free[j]] = m_scale[i] * m_scale[j] * m_vector[i];
    }
}

} // namespace tarnis::analysis
