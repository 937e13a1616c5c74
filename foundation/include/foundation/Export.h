#pragma once

/// Marks what libfoundation.so exports; everything else is hidden.
#define FOUNDATION_API __attribute__((visibility("default")))
