#pragma once

/// Prepares the media library behind the seams step by step. Any thread; a call waits for the same
/// work under way on another. What this machine lacks is left out.
namespace GstRuntime
{

/// To be called before anything else of the library. Takes seconds where the list of its plugins
/// has to be made first, as after an installation.
void initialise();

/// Reads the code that most films need from the disk. Calls initialise() first.
void loadFilmElements();
/// The same for the movie writer.
void loadMovieElements();

/// Encodes and decodes a few tiny pictures and sounds in memory, so that the code has run once.
/// Touches no device, no driver, no sound server and no file.
void runWarmUpPipelines();

} // namespace GstRuntime
