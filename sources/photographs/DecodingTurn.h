#pragma once

#include <QtGlobal>

#include <chrono>
#include <memory>

/// What reading a picture takes at the most, in bytes; zeros for a file that does not say.
struct PictureNeed {
    /// The picture that is handed over.
    qint64 answer = 0;
    /// What the decoder holds besides, of the same order for the picture and for its thumbnail.
    qint64 decoder = 0;
};

/// Bounds the memory that pictures take in the whole process: one large picture is decoded at a
/// time, and while one is decoded whose decoder holds much, nobody keeps pictures that nobody waits
/// for. Any thread.
class DecodingTurn
{
public:
    /// One that keeps pictures for later. Called on other threads, which hold no lock of its own.
    class Keeper
    {
    public:
        virtual ~Keeper() = default;
        /// Drops all that nobody waits for. Until goOn() nothing is to be read for later.
        virtual void letGo() = 0;
        virtual void goOn() = 0;
    };

    /// A drive that falls silent must not hold up the others for longer.
    static constexpr std::chrono::seconds LONGEST_SILENCE{20};

    /// Waits while another large picture is being decoded, unless it still reads its file and has
    /// noted no progress for the silence. A small one does not wait.
    explicit DecodingTurn(const PictureNeed &need,
                          std::chrono::milliseconds longestSilence = LONGEST_SILENCE);
    ~DecodingTurn();
    DecodingTurn(const DecodingTurn &) = delete;
    DecodingTurn &operator=(const DecodingTurn &) = delete;

    /// Bytes of the file have come. Once it `isRead`, the others wait for the end, however long it
    /// takes.
    void noteProgress(bool isRead);

    /// Whether nothing may be kept beside the decoder of that one.
    [[nodiscard]] static bool standsAlone(const PictureNeed &need);
    /// Whether one of those is being decoded.
    [[nodiscard]] static bool isAlone();
    /// Is told from now on, for as long as it lives.
    static void add(const std::weak_ptr<Keeper> &keeper);

private:
    bool m_holds = false;
    bool m_isAlone = false;
};
