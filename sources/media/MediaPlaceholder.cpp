// Replaced by the first seam.
