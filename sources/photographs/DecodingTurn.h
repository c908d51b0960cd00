#pragma once

#include <QtGlobal>

/// Lets one large picture be decoded at a time in the whole process, so that their memory does not
/// add up. Any thread.
class DecodingTurn
{
public:
    /// Waits while another large picture is being decoded, twenty seconds at most: one whose drive
    /// falls silent must not hold up the others. `bytes` is what the picture will take; a small one
    /// does not wait.
    explicit DecodingTurn(qint64 bytes);
    ~DecodingTurn();
    DecodingTurn(const DecodingTurn &) = delete;
    DecodingTurn &operator=(const DecodingTurn &) = delete;

private:
    bool m_holds = false;
};
