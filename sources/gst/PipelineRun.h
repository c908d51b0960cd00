#pragma once

#include <QByteArray>

/// Builds the pipeline of that description and plays it to its end, which has to come within three
/// seconds. Returns whether all of that went well. Any thread, after GstRuntime::initialise().
bool runPipelineToItsEnd(const QByteArray &description);
