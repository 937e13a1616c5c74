package com.corvallen.storage.provider;

import java.util.HashMap;
import java.util.Map;

/**
 * Lets deliveries through until it is closed, and closes only when none is left inside.
 *
 * <p>Safe on any thread. {@link #close} blocks while other threads are inside.
 */
final class DeliveryGate {
    /** How many deliveries each thread is inside of; a receiver may publish again from within a delivery. */
    private final Map<Thread, Integer> depths = new HashMap<>();

    private int running;

    /**
     * Those of the running deliveries whose own thread waits in close(). Another thread that closes from inside a
     * delivery does not wait for them, since they wait for it; one that closes from outside does, since they do not.
     */
    private int waiting;

    private boolean closed;

    /**
     * Begins a delivery on this thread.
     *
     * @return false if the gate is closed; the delivery must not take place, and leave() must not be called
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

    /** Closes the gate; returns when no delivery runs but those that this thread itself is inside of. */
    synchronized void close() {
        closed = true;
        int own = depths.getOrDefault(Thread.currentThread(), 0);
        waiting += own;
        notifyAll();
        awaitOthers(own > 0);
        waiting -= own;
    }

    /** An interrupt does not end the wait, since memory is freed when it is over; it is kept for the caller. */
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
