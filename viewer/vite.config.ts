import { defineConfig } from 'vite';
import { viteSingleFile } from 'vite-plugin-singlefile';

// One page without any other file: scripts (workers too), styles and icons are within it.
export default defineConfig({
  plugins: [viteSingleFile()],
  build: { target: 'es2022', chunkSizeWarningLimit: 4096 },
  // Classic workers: browsers refuse module workers to a page that was opened from a file.
  worker: { format: 'iife' },
});
