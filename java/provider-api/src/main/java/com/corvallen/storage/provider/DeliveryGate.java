package com.corvallen.storage.provider;

import java.util.HashMap;
import java.util.Map;

/**
 * Lets deliveries in until it is closed. {@link #close} waits until no other thread is inside.
 *
 * <p>Safe on any thread.
 */
final class DeliveryGate {
    /** The number of deliveries that each thread is inside; a receiver may publish again during a delivery. */
    private final Map<Thread, Integer> depths = new HashMap<>();

    private int running;

    /**
     * The number of running deliveries whose own thread waits in close(). A thread that closes from inside a delivery
     * does not wait for them, because they wait for it. A thread that closes from outside does.
     */
    private int waiting;

    private boolean closed;

    /**
     * Begins a delivery on this thread.
     *
     * @return false if the gate is closed: the delivery must not take place, and leave() must not be called
     */
    synchronized boolean enter() {
        if (closed) {
            return false;
        }
        depths.merge(Thread.currentThread(), 1, Integer::sum);
        running++;
        return true;
    }

    /** Ends a delivery that enter() allowed on this thread. */
    synchronized void leave() {
        depths.computeIfPresent(Thread.currentThread(), (thread, depth) -> depth == 1 ? null : depth - 1);
        running--;
        notifyAll();
    }

    /** Closes the gate; returns when no delivery runs except those of this thread. */
    synchronized void close() {
        closed = true;
        int own = depths.getOrDefault(Thread.currentThread(), 0);
        waiting += own;
        notifyAll();
        awaitOthers(own > 0);
        waiting -= own;
    }

    /** An interrupt does not end the wait, because memory is freed afterwards; the caller still sees the interrupt. */
    private void awaitOthers(boolean inside) {
        boolean interrupted = false;
        while (running > (inside ? waiting : 0)) {
            try {
                wait();
            } catch (InterruptedException e) {
                interrupted = true;
            }
        }
        if (interrupted) {
            Thread.currentThread().interrupt();
        }
    }
}
