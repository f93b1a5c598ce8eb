// Tests of the strip.
