#pragma once

#include <QString>

#include <cstdint>
#include <optional>

/// Which camera it is, wherever it is plugged in.
struct CameraIdentity {
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    /// As the system read it; any text, also none.
    QString serial;

    /// "04fc:6330", and behind a space the serial number if there is one.
    [[nodiscard]] QString text() const;
    /// Nothing when it is not such a text.
    [[nodiscard]] static std::optional<CameraIdentity> fromText(const QString &text);

    bool operator==(const CameraIdentity &other) const
    {
        return vendorId == other.vendorId && productId == other.productId && serial == other.serial;
    }
    bool operator!=(const CameraIdentity &other) const { return !(*this == other); }
};

/// The camera that the user has chosen; when there is none, those of CAMERA_PROFILES are meant.
using CameraChoice = std::optional<CameraIdentity>;
