import { defineConfig } from 'vitest/config';

const MINUTE = 60_000;

// Patience, not targets: a browser that draws in software on a busy machine takes its time.
export default defineConfig({
    test: {
        testTimeout: 5 * MINUTE,
        hookTimeout: 5 * MINUTE,
        expect: { poll: { timeout: MINUTE, interval: 100 } },
    },
});
