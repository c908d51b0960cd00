#pragma once

/// Why a picture is not shown.
enum class PictureProblem {
    None,
    /// No file of that name.
    Gone,
    /// It may not be read, its disk reports an error, or it is no plain file.
    Unreadable,
    /// No picture, or none of it can be decoded within the limits.
    Damaged,
    /// The drive has not answered yet.
    NoAnswer,
};
