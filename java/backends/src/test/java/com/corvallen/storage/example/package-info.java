/** A small, complete back end; the guide for authors quotes it. */
package com.corvallen.storage.example;
