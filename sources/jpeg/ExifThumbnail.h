#pragma once

#include <QByteArray>

/// The JPEG file of the small picture that cameras and telephones put into their pictures; empty
/// when there is none. `jpeg` is a JPEG file or its first 128 KiB. Nothing says that the small
/// picture shows what the large one shows now: programs that change a picture may keep it. Any
/// thread.
[[nodiscard]] QByteArray exifThumbnail(const QByteArray &jpeg);
