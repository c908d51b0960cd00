#include "canvas/StartPicture.h"

#include <cstring>

namespace
{

const char PATH[] = ":/icons/Background/MAIN_WINDOWS.png";

FramePtr decoded()
{
    const QImage image = QImage(PATH).convertToFormat(QImage::Format_RGB888);
    if (image.isNull())
        return nullptr;
    std::unique_ptr<Frame> frame = Frame::create(image.size(), QImage::Format_RGB888);
    if (frame)
        std::memcpy(frame->rows().data, image.constBits(), frame->byteCount());
    return frame;
}

} // namespace

FramePtr startPicture()
{
    static std::weak_ptr<const Frame> shown;
    FramePtr picture = shown.lock();
    if (!picture) {
        picture = decoded();
        shown = picture;
    }
    return picture;
}
