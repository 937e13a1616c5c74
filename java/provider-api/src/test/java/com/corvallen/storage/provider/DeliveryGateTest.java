package com.corvallen.storage.provider;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.concurrent.CountDownLatch;
import java.util.concurrent.CyclicBarrier;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicBoolean;
import java.util.concurrent.atomic.AtomicInteger;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.Timeout;

@Timeout(30)
class DeliveryGateTest {
    private final DeliveryGate gate = new DeliveryGate();

    /** A thread whose failure fails the test that joins it. */
    private static final class Worker extends Thread {
        private volatile Throwable failure;

        interface Job {
            void run() throws Exception;
        }

        Worker(Job job) {
            super();
            this.job = job;
            start();
        }

        private final Job job;

        @Override
        public void run() {
            try {
                job.run();
            } catch (Throwable e) {
                failure = e;
            }
        }

        void finish() throws Exception {
            join();
            if (failure != null) {
                throw new AssertionError(failure);
            }
        }
    }

    private static void await(CountDownLatch latch) throws InterruptedException {
        assertTrue(latch.await(20, TimeUnit.SECONDS));
    }

    /** Returns once the thread blocks, which it only does to wait for deliveries. */
    private static void awaitBlocked(Thread thread) {
        while (thread.getState() != Thread.State.WAITING) {
            assertTrue(thread.isAlive(), "ended instead of waiting");
            Thread.onSpinWait();
        }
    }

    @Test
    void openGateLetsDeliveriesThrough() {
        assertTrue(gate.enter());
        gate.leave();
        assertTrue(gate.enter());
        gate.leave();
    }

    @Test
    void closedGateLetsNothingThrough() {
        gate.close();
        assertFalse(gate.enter());
        gate.close();
        assertFalse(gate.enter());
    }

    /** A thread that closes, and notes whether the deliveries had ended by then. */
    private Worker closer(AtomicBoolean delivered, AtomicBoolean seen) {
        return new Worker(() -> {
            gate.close();
            seen.set(delivered.get());
        });
    }

    @Test
    void closeWaitsForADeliveryOnAnotherThread() throws Exception {
        assertTrue(gate.enter());
        AtomicBoolean delivered = new AtomicBoolean();
        AtomicBoolean seen = new AtomicBoolean();
        Worker closer = closer(delivered, seen);
        awaitBlocked(closer);
        delivered.set(true);
        gate.leave();
        closer.finish();
        assertTrue(seen.get(), "close returned while a delivery was running");
    }

    @Test
    void closeWaitsForTheOuterOfNestedDeliveries() throws Exception {
        assertTrue(gate.enter());
        assertTrue(gate.enter());
        AtomicBoolean delivered = new AtomicBoolean();
        AtomicBoolean seen = new AtomicBoolean();
        Worker closer = closer(delivered, seen);
        awaitBlocked(closer);
        gate.leave();
        awaitBlocked(closer);
        delivered.set(true);
        gate.leave();
        closer.finish();
        assertTrue(seen.get(), "close returned while the outer delivery was running");
    }

    @Test
    void closeFromInsideADeliveryReturns() {
        assertTrue(gate.enter());
        assertTrue(gate.enter());
        gate.close();
        assertFalse(gate.enter());
        gate.leave();
        gate.leave();
        gate.close();
    }

    @Test
    void closeFromInsideADeliveryWaitsForTheOthers() throws Exception {
        CountDownLatch inside = new CountDownLatch(1);
        CountDownLatch release = new CountDownLatch(1);
        Worker other = new Worker(() -> {
            assertTrue(gate.enter());
            inside.countDown();
            await(release);
            gate.leave();
        });
        await(inside);
        Worker closer = new Worker(() -> {
            assertTrue(gate.enter());
            gate.close();
            gate.leave();
        });
        awaitBlocked(closer);
        release.countDown();
        other.finish();
        closer.finish();
    }

    @Test
    void closersInsideDeliveriesDoNotWaitForEachOther() throws Exception {
        CyclicBarrier bothInside = new CyclicBarrier(2);
        Worker.Job job = () -> {
            assertTrue(gate.enter());
            bothInside.await(20, TimeUnit.SECONDS);
            gate.close();
            gate.leave();
        };
        Worker first = new Worker(job);
        Worker second = new Worker(job);
        first.finish();
        second.finish();
        assertFalse(gate.enter());
    }

    @Test
    void closerOutsideWaitsForADeliveryThatIsClosingItself() throws Exception {
        CountDownLatch closedInside = new CountDownLatch(1);
        CountDownLatch release = new CountDownLatch(1);
        Worker inner = new Worker(() -> {
            assertTrue(gate.enter());
            gate.close();
            closedInside.countDown();
            await(release);
            gate.leave();
        });
        await(closedInside);
        Worker outer = new Worker(gate::close);
        awaitBlocked(outer);
        release.countDown();
        inner.finish();
        outer.finish();
    }

    @Test
    void interruptDoesNotEndTheWaitAndIsKept() throws Exception {
        assertTrue(gate.enter());
        AtomicBoolean delivered = new AtomicBoolean();
        AtomicBoolean seen = new AtomicBoolean();
        AtomicBoolean interrupted = new AtomicBoolean();
        Worker closer = new Worker(() -> {
            Thread.currentThread().interrupt();
            gate.close();
            seen.set(delivered.get());
            interrupted.set(Thread.currentThread().isInterrupted());
        });
        awaitBlocked(closer);
        delivered.set(true);
        gate.leave();
        closer.finish();
        assertTrue(seen.get(), "the interrupt ended the wait");
        assertTrue(interrupted.get());
    }

    @Test
    void noDeliveryRunsAfterCloseUnderLoad() throws Exception {
        AtomicInteger inside = new AtomicInteger();
        AtomicBoolean stop = new AtomicBoolean();
        Worker.Job deliver = () -> {
            while (!stop.get() && gate.enter()) {
                inside.incrementAndGet();
                Thread.yield();
                inside.decrementAndGet();
                gate.leave();
            }
        };
        Worker[] workers = {new Worker(deliver), new Worker(deliver), new Worker(deliver), new Worker(deliver)};
        gate.close();
        assertEquals(0, inside.get());
        stop.set(true);
        for (Worker worker : workers) {
            worker.finish();
        }
    }
}
