#pragma once

#include <atomic>

/// What goes wrong with the emulated camera. Every member may be changed at any time on any thread.
///
/// A count says how many of the coming events are affected: n of them, 0 none, -1 all until it is
/// set to 0 again. A switch is 0 or 1.
struct CameraFaults {
    // Control transfers
    std::atomic<int> stallControls{0}; ///< count of class requests answered with a stall
    std::atomic<int> stallProbes{0};   ///< count of stalled probe and commit requests
    std::atomic<int> hangControls{0};  ///< count of class requests that stay without an answer
    std::atomic<int> stallSelector{0}; ///< this selector of the extension unit always stalls

    // Frames
    std::atomic<int> truncateFrames{0};  ///< count: the second half of the JPEG is missing
    std::atomic<int> corruptFrames{0};   ///< count: the Huffman tables are damaged
    std::atomic<int> emptyFrames{0};     ///< count: a JPEG without a picture in it
    std::atomic<int> wrongSizeFrames{0}; ///< count: the JPEG header says twice the height
    std::atomic<int> smallSizeFrames{0}; ///< count: the JPEG header says half the height
    std::atomic<int> dropFrames{0};      ///< count: never sent
    std::atomic<int> errorBitFrames{0};  ///< count: the error bit is set in the payload headers
    std::atomic<int> silent{0};          ///< switch: nothing is sent at all
    std::atomic<int> endpointStalls{0};  ///< count of payload transfers that end in a stall

    // The device
    std::atomic<int> claimBusy{0};    ///< switch: claiming an interface answers EBUSY
    std::atomic<int> hangReleases{0}; ///< count: giving an interface back stays without an answer
    std::atomic<int> denyOpen{0};     ///< switch, from the next plug(): node of mode 000
    std::atomic<int> withoutExtensionUnit{0}; ///< switch, from the next plug()
    std::atomic<int> missingSize{0}; ///< from the next plug(): 1, 2 or 3, the size not offered
};

/// Whether the next event is affected; uses one up of a positive count.
[[nodiscard]] inline bool takeFault(std::atomic<int> &count)
{
    int left = count.load();
    while (left > 0 && !count.compare_exchange_weak(left, left - 1)) {
    }
    return left != 0;
}

/// The member of that name, null if there is none.
[[nodiscard]] std::atomic<int> *findFault(CameraFaults &faults, const char *name);
