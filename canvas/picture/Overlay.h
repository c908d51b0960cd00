#pragma once

#include <QImage>
#include <QRect>

#include <functional>

/// A picture that is laid over each frame, most of it transparent. Not locked: its owner's lock
/// guards it.
class Overlay
{
public:
    /// Whether there is anything to lay over.
    [[nodiscard]] virtual bool isUsed() const = 0;
    /// ARGB32 premultiplied, in rotated-picture coordinates; null as long as nothing was drawn.
    [[nodiscard]] virtual const QImage &image() const = 0;
    /// Calls `visit` for the parts inside `area` that may not be transparent.
    virtual void forEachTouched(const QRect &area,
                                const std::function<void(const QRect &)> &visit) const = 0;

protected:
    Overlay() = default;
    ~Overlay() = default;
    Overlay(const Overlay &) = default;
    Overlay &operator=(const Overlay &) = default;
};
