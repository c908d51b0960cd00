#pragma once

/// Faults of the USB libraries in cameras that leave, and in what cameras claim of themselves. The
/// definitions in LibraryFaults.cpp take the place of the libraries' own functions for the whole
/// program.
///
/// - libusb_set_interface_alt_setting() unlocks a mutex that it has not locked when the device is
///   gone, and closing the device then aborts the process. For a device that is gone it now answers
///   LIBUSB_ERROR_NO_DEVICE without that.
/// - libuvc asks for a transfer of the stream again when it has taken the picture out, and does not
///   look whether that was refused. Ending the stream then waits for that transfer for ever. A
///   refused one is now given back to the library as one that the device has dropped.
/// - libuvc takes descriptors for as long as they should be. Those that
/// libusb_get_config_descriptor()
///   gives have gone through DescriptorFence.
/// - libuvc waits for ever for the answers to its questions for a stream. So do the thread that
///   asked, the library's own and the descriptors of both. See QuestionsBounded.
namespace LibraryFaults
{

/// While it lives, interface settings that this thread asks for are left as they are: for closing a
/// camera whose stream has ended, which has nothing to set any more and may leave meanwhile.
class SettingsLeftAlone
{
public:
    SettingsLeftAlone();
    ~SettingsLeftAlone();
    SettingsLeftAlone(const SettingsLeftAlone &) = delete;
    SettingsLeftAlone &operator=(const SettingsLeftAlone &) = delete;
};

/// While it lives, refused transfers that this thread asks for are told by their result alone: for
/// the start of a stream, which looks at it.
class RefusalsTold
{
public:
    RefusalsTold();
    ~RefusalsTold();
    RefusalsTold(const RefusalsTold &) = delete;
    RefusalsTold &operator=(const RefusalsTold &) = delete;
};

/// While it lives, a question without a time limit that this thread asks is taken back after
/// ANSWER_LIMIT_MS and fails with LIBUSB_ERROR_TIMEOUT, and so do, unasked, those that follow it:
/// for agreeing on a stream, after which somebody else may have the camera.
class QuestionsBounded
{
public:
    /// The longest that the standard gives a device for an answer.
    static constexpr unsigned ANSWER_LIMIT_MS = 5000;

    QuestionsBounded();
    ~QuestionsBounded();
    QuestionsBounded(const QuestionsBounded &) = delete;
    QuestionsBounded &operator=(const QuestionsBounded &) = delete;

    /// Whether one was taken back.
    [[nodiscard]] bool unanswered() const;
};

/// Whether on this thread a device has left in the middle of setting an interface. The thread's
/// devices must not be closed then.
[[nodiscard]] bool deviceLeftInSetting();

} // namespace LibraryFaults
