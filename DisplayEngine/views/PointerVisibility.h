#pragma once

namespace sorvane {

// The pointer hidden over a show until it moves: one application-wide override
// cursor, set and restored in pairs, and given back when this object goes.
class PointerVisibility {
public:
    PointerVisibility() = default;
    PointerVisibility(const PointerVisibility &) = delete;
    PointerVisibility &operator=(const PointerVisibility &) = delete;
    ~PointerVisibility();

    void setHidden(bool hidden);
    bool isHidden() const { return m_hidden; }

private:
    bool m_hidden = false;
};

} // namespace sorvane
