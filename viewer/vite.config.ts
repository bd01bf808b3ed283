import license from 'rollup-plugin-license';
import { defineConfig } from 'vite';
import { viteSingleFile } from 'vite-plugin-singlefile';

// One page without any other file: scripts (workers too), styles and icons are within it.
export default defineConfig({
    plugins: [
        viteSingleFile(),
        // Beside the page: the licences of all packages that parts of are within it.
        license({ thirdParty: { output: 'dist/licences.txt' } }),
    ],
    build: { target: 'es2022', chunkSizeWarningLimit: 4096 },
    // Classic workers: browsers refuse module workers to a page that was opened from a file.
    worker: { format: 'iife' },
});
