// Compiled once per layer check: the header is out of reach for a lower layer.
#include LAYER_HEADER
