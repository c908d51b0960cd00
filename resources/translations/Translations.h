#pragma once

/// Makes the catalogues known under ":/translations". A static library's resources vanish from a
/// program that never names them, so the start-up calls this; more calls do nothing.
void initialiseTranslations();
