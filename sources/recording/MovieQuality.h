#pragma once

/// How many bytes a movie takes: Small is half of Standard.
enum class MovieQuality { Standard, Small };
