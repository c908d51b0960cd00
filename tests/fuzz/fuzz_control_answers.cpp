// What a camera answers to the questions of its controls: of the vendor's unit, whose numbers are
// shown over the picture, and of the controls that any camera may have. Whatever it claims, what is
// drawn stays small, and what is sent is a value that the camera itself has named.

#include "canvas/osd/BrightnessScale.h"
#include "canvas/osd/IndicationTexts.h"
#include "sources/LiveSourceBase.h"
#include "sources/camera/CameraParameters.h"
#include "sources/camera/StandardControls.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

// The name and the parameters are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace
{

using namespace CameraParameter;

constexpr int MOST_STEPS = 100;
constexpr unsigned long PARAMETERS[] = {ZOOM_IN_KEY,           ZOOM_OUT_KEY,         AUTOFOCUS_KEY,
                                        BRIGHTNESS_UP_KEY,     BRIGHTNESS_DOWN_KEY,  BRIGHTNESS,
                                        OPTICAL_ZOOM_POSITION, DIGITAL_ZOOM,         BRIGHTNESS_MIN,
                                        BRIGHTNESS_MAX,        OPTICAL_ZOOM_PERCENT, SECOND_ZOOM};

void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// A camera with the vendor's unit, whose answers are short, late, wrong or none at all.
class VendorCamera : public LiveSourceBase
{
public:
    explicit VendorCamera(FuzzedDataProvider &answers)
        : m_answers(answers)
    {
    }

    [[nodiscard]] bool running() const override { return true; }
    int ksPropSet(unsigned long, void *, unsigned long length) override
    {
        return m_answers.ConsumeBool() ? static_cast<int>(length) : -1;
    }
    int ksPropGet(unsigned long, void *data, unsigned long length) override
    {
        const auto most = m_answers.ConsumeIntegralInRange<std::size_t>(0, length);
        const auto bytes = m_answers.ConsumeBytes<char>(most);
        std::copy(bytes.begin(), bytes.end(), static_cast<char *>(data));
        return bytes.empty() ? -1 : static_cast<int>(bytes.size());
    }

private:
    FuzzedDataProvider &m_answers;
};

void showVendorAnswers(FuzzedDataProvider &answers)
{
    VendorCamera camera(answers);
    camera.brightnessUp();
    camera.zoomReset();
    const int value = camera.brightness(), most = camera.brightnessMax(),
              least = camera.brightnessMin();
    const auto pieces = BrightnessScale::layout({1000, 670}, value, least, most, {12, 12, 6, 8});
    require(pieces.size() >= 2 && pieces.size() <= BrightnessScale::MOST_SEGMENTS + 3);
    const auto isMarker = [](const BrightnessScale::PlacedPiece &piece) {
        return piece.piece == BrightnessScale::Piece::Marker ||
               piece.piece == BrightnessScale::Piece::CentreMarker;
    };
    const auto markers = std::count_if(pieces.begin(), pieces.end(), isMarker);
    require(markers == (value >= least && value <= most ? 1 : 0));
    for (const BrightnessScale::PlacedPiece &piece : pieces)
        require(std::abs(piece.position.x()) < 2000);
    const double lens = camera.opticalZoomPercent(), factor = camera.digitalZoomPercent();
    require(std::isfinite(lens) && lens >= 0 && std::isfinite(factor) && factor >= 0);
    require(IndicationTexts::digitalZoom(factor).size() >= 5);
}

/// What a camera says of one control, each answer of as many bytes as it likes.
ControlAnswers answersFor(const StandardControlRow &row, FuzzedDataProvider &answers)
{
    const auto answer = [&]() -> std::optional<std::int64_t> {
        const auto bytes = answers.ConsumeBytes<std::uint8_t>(row.bytes);
        return answers.ConsumeBool() ? std::optional(row.decode(bytes)) : std::nullopt;
    };
    ControlAnswers all;
    all.settable = answers.ConsumeBool();
    all.minimum = answer();
    all.maximum = answer();
    all.resolution = answer();
    all.initial = answer();
    all.current = answer();
    return all;
}

void requireSendable(const StandardControls &controls, const StandardControls::Settings &settings)
{
    for (const StandardControls::Setting &setting : settings) {
        const StandardControlRow &row = StandardControlRow::of(setting.control);
        const ControlRange range = controls.range(setting.control);
        require(controls.has(setting.control));
        require(setting.value >= range.minimum && setting.value <= range.maximum);
        require((setting.value - range.minimum) % range.step == 0);
        // It goes through the wire as it is.
        require(row.decode(row.encode(setting.value)) == setting.value);
    }
}

void requireReadable(const StandardControls &controls)
{
    for (const unsigned long parameter : PARAMETERS) {
        const auto value = controls.read(parameter);
        if (value && (parameter == BRIGHTNESS || parameter == BRIGHTNESS_MAX))
            require(*value >= 1 && *value <= StandardControls::BRIGHTNESS_LEVELS);
        if (value && parameter == OPTICAL_ZOOM_PERCENT)
            require(*value <= 100);
    }
}

void driveStandardControls(FuzzedDataProvider &answers)
{
    StandardControls controls;
    const auto anyControl = [&] { return answers.PickValueInArray(STANDARD_CONTROLS).control; };
    for (int step = 0; step < MOST_STEPS && answers.remaining_bytes() > 0; ++step) {
        StandardControls::Settings settings;
        switch (answers.ConsumeIntegralInRange(0, 6)) {
        case 0: {
            const StandardControlRow row = answers.PickValueInArray(STANDARD_CONTROLS);
            controls.learn(row.control, answersFor(row, answers));
            break;
        }
        case 1: {
            const unsigned long parameter = answers.PickValueInArray(PARAMETERS);
            settings = controls.write(parameter, answers.ConsumeIntegral<std::uint8_t>())
                           .value_or(StandardControls::Settings());
            break;
        }
        case 2:
            settings = controls.zoom();
            break;
        case 3:
            settings = controls.set(anyControl(), answers.ConsumeIntegral<std::int64_t>());
            break;
        case 4:
            settings = controls.setAutomatic(anyControl(), answers.ConsumeBool());
            break;
        case 5:
            controls.note(anyControl(), answers.ConsumeIntegral<std::int64_t>());
            break;
        default:
            controls.forget(anyControl());
        }
        requireSendable(controls, settings);
        requireReadable(controls);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzedDataProvider answers(data, size);
    if (answers.ConsumeBool())
        showVendorAnswers(answers);
    else
        driveStandardControls(answers);
    return 0;
}
