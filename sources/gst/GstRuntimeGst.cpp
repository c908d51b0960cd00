#include "sources/gst/GstRuntime.h"

#include "sources/gst/PipelineRun.h"

#include <gst/gst.h>

#include <array>
#include <initializer_list>

namespace
{

// Each in another plugin, whose libraries are read from the disk when it is first used.
constexpr std::array FILM_ELEMENTS{
    "playbin",       "typefind",   "qtdemux",        "h264parse",    "avdec_h264",
    "avidemux",      "jpegdec",    "mpegaudioparse", "videoconvert", "videoflip",
    "videoscale",    "capsfilter", "appsink",        "deinterlace",  "audioconvert",
    "audioresample", "volume",     "autoaudiosink",  "pulsesink"};
constexpr std::array MOVIE_ELEMENTS{"appsrc", "x264enc",   "h264parse", "queue",
                                    "qtmux",  "avenc_aac", "aacparse",  "filesink"};

constexpr std::array WARM_UP_PIPELINES{
    "videotestsrc num-buffers=3 pattern=black ! video/x-raw,format=I420,width=64,height=64"
    " ! x264enc speed-preset=superfast tune=zerolatency ! h264parse ! avdec_h264"
    " ! videoscale ! videoconvert ! videoflip video-direction=auto ! video/x-raw,format={I420,RGB}"
    " ! fakesink sync=false",
    "audiotestsrc num-buffers=3 wave=silence ! avenc_aac ! aacparse ! avdec_aac ! audioconvert"
    " ! audioresample ! volume ! fakesink sync=false"};

template <class Names>
void load(const Names &names)
{
    GstRuntime::initialise();
    for (const char *name : names) {
        if (GstElementFactory *factory = gst_element_factory_find(name)) {
            if (GstPluginFeature *loaded = gst_plugin_feature_load(GST_PLUGIN_FEATURE(factory)))
                gst_object_unref(loaded);
            gst_object_unref(factory);
        }
    }
}

} // namespace

void GstRuntime::initialise()
{
    gst_init_check(nullptr, nullptr, nullptr);
}

void GstRuntime::loadFilmElements()
{
    load(FILM_ELEMENTS);
}

void GstRuntime::loadMovieElements()
{
    load(MOVIE_ELEMENTS);
}

void GstRuntime::runWarmUpPipelines()
{
    initialise();
    for (const char *description : WARM_UP_PIPELINES)
        runPipelineToItsEnd(description);
}
