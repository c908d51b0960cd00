#pragma once

#include "sources/film/FilmPlayer.h"

#include <gst/gst.h>

/// What an error message tells of the film.
[[nodiscard]] FilmFault faultOf(GstMessage *message);

/// Whether the message tells that the decoder of a picture is missing.
[[nodiscard]] bool isMissingDecoder(GstMessage *message);
