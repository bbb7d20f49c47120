// RAII handles for the HDF5 C library, and a guard that keeps its errors off standard error.
#pragma once

#include <hdf5.h>

#include <utility>

namespace tarnis::hdf5 {

/// Owns a handle; negative handles are errors of the library and are not closed.
class Handle {
public:
    using Close = herr_t (*)(hid_t);
    Handle(hid_t id, Close close)
        : m_id(id)
        , m_close(close)
    {
    }
    Handle(Handle&& other) noexcept
        : m_id(std::exchange(other.m_id, H5I_INVALID_HID))
        , m_close(other.m_close)
    {
    }
    Handle& operator=(Handle&&) = delete;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle()
    {
        if (isValid())
            m_close(m_id);
    }

    bool isValid() const { return m_id >= 0; }
    operator hid_t() const { return m_id; } // NOLINT(*-explicit-*): for calls of the C library

private:
    hid_t m_id;
    Close m_close;
};

/// The library prints its stack of errors by default. Callers get an error text instead.
class Quiet {
public:
    Quiet()
    {
        H5Eget_auto2(H5E_DEFAULT, &m_function, &m_data);
        H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
    }
    ~Quiet() { H5Eset_auto2(H5E_DEFAULT, m_function, m_data); }
    Quiet(const Quiet&) = delete;
    Quiet& operator=(const Quiet&) = delete;

private:
    H5E_auto2_t m_function = nullptr;
    void* m_data = nullptr;
};

} // namespace tarnis::hdf5
