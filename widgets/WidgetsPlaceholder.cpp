// Replaced by the first widget.
