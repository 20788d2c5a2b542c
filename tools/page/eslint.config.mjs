// What the compiler does not see: promises that nobody waits for, and what is known to go wrong.
import { defineConfig } from 'eslint/config';
import typescript from 'typescript-eslint';

export default defineConfig(
  { ignores: ['node_modules'] },
  {
    files: ['src/**/*.ts'],
    extends: [typescript.configs.recommendedTypeChecked],
    languageOptions: { parserOptions: { projectService: true, tsconfigRootDir: import.meta.dirname } },
    rules: {
      // Arguments that a base class has and one of its kinds does not need begin with an underscore.
      '@typescript-eslint/no-unused-vars': ['error', { argsIgnorePattern: '^_' }],
      // busy() gives its promise on to who wants it; what goes wrong in it is seen in the console.
      '@typescript-eslint/no-floating-promises': ['error', { allowForKnownSafeCalls: [{ from: 'file', name: 'busy' }] }],
      // Listeners may give promises too.
      '@typescript-eslint/no-misused-promises': ['error', { checksVoidReturn: false }],
      eqeqeq: 'error',
    },
  },
);
