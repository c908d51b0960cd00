#pragma once

#include <QString>

/// The translation catalogue of a locale name such as "ja_JP" (QLocale::name(), language_COUNTRY).
/// Only an exact match selects a language; every other name gives the absent English catalogue,
/// whose failed load leaves the source texts standing.
[[nodiscard]] QString catalogueForLocale(const QString &localeName);
