#include "mainwindow/CanvasDeck.h"

#include "canvas/ImageCanvas.h"
#include "canvas/OSDProcessor.h"
#include "mainwindow/Modes.h"

void CanvasDeck::add(ImageCanvas *canvas, OSDProcessor *indications)
{
    m_indications.insert(canvas, indications);
    canvas->setOsdProcessor(indications);
    addWidget(canvas);
}

ImageCanvas *CanvasDeck::current() const
{
    return canvas(mode());
}

ImageCanvas *CanvasDeck::canvas(int mode) const
{
    return qobject_cast<ImageCanvas *>(widget(mode));
}

bool CanvasDeck::onLive() const
{
    return mode() == Modes::Live;
}

OSDProcessor *CanvasDeck::indications() const
{
    return m_indications.value(current());
}

const QHash<ImageCanvas *, OSDProcessor *> &CanvasDeck::allIndications() const
{
    return m_indications;
}
