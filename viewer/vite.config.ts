import { defineConfig } from 'vite';
import { viteSingleFile } from 'vite-plugin-singlefile';

// One page without any other file: scripts (workers too), styles and icons are within it.
export default defineConfig({
  plugins: [viteSingleFile()],
  build: { target: 'es2022', chunkSizeWarningLimit: 4096 },
  // No module: a browser starts none from a page that was opened from a file.
  worker: { format: 'iife' },
});
