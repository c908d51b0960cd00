#pragma once

#include "sources/film/FilmPlayer.h"

#include <gst/gst.h>

/// What an error message tells of the film.
[[nodiscard]] FilmFault faultOf(GstMessage *message);

/// The decoder of a picture that the message tells to be missing, in the media library's words;
/// empty for any other message.
[[nodiscard]] QString missingDecoder(GstMessage *message);
