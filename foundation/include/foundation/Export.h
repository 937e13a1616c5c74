#pragma once

/// Marks what libfoundation.so gives to other libraries; everything else stays hidden.
#define FOUNDATION_API __attribute__((visibility("default")))
