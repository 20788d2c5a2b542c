// Unpacks the page's script and runs it. The page's policy knows that by its hash, as it does this one.
import { noteFailedStart, packedIn } from './packed.ts';

interface TrustedTypes {
  createPolicy(name: string, rules: { createScript: (text: string) => string }): { createScript(text: string): string };
}

async function start() {
  const text = await packedIn('script').text();
  const policy = (globalThis as { trustedTypes?: TrustedTypes }).trustedTypes?.createPolicy('start', { createScript: (one) => one });
  const script = document.createElement('script');
  script.type = 'module';
  script.text = policy ? policy.createScript(text) : text;
  document.body.append(script);
}

start().catch(noteFailedStart);
