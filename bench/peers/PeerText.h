// The texts the peer benchmark measures on: one seeded generator of Pascal
// source, written to files so that every control reads the same bytes.
#pragma once

#include <QString>

#include <cstdint>

namespace peers {

/// The files written for one run and what the measurements need to know of them.
struct PeerTexts {
    QString BigPath;  ///< a million lines, about 40 MB of UTF-8
    qint64 BigBytes = 0;
    int BigLines = 0;
    QString SmallPath;  ///< the first 100 lines of the big text
    int SmallLines = 0;
    QString ReplacePath;  ///< 100,000 lines; ReplaceWord on every tenth
    int ReplaceLines = 0;
    int ReplaceHits = 0;
    QString LongLinePath;  ///< a short text with one line of a million characters
    int LongLine = 0;
    int LongLineLength = 0;
};

/// Words the measurements look for; the generator never writes them elsewhere.
inline const QString FindWord = QStringLiteral("Zanzibar");  ///< first on the big text's last line
inline const QString ReplaceWord = QStringLiteral("OldName");
inline const QString ReplaceBy = QStringLiteral("RenamedItem");

/// Writes the four texts into dir; the same seed gives the same bytes.
PeerTexts WritePeerTexts(const QString& dir, std::uint64_t seed);

}  // namespace peers
