// The ClickHouse of today behind as much of its HTTP interface as vekmsg load uses: the engine runs in this process.
//    node currentServer.mjs MODULES FOLDER      prints its port, and ends with its standard input
import { writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { createRequire } from 'node:module';

const [modules, folder] = process.argv.slice(2);
const { Session } = createRequire(`${modules}/node_modules/`)('chdb');
const session = new Session(`${folder}/data`);
const run = async statement => (await session.queryAsync(statement, { format: 'TabSeparated' })).bytes();

// Blocks in zstd with 25 bytes in front: without them it is a file in zstd.
function unpacked(body) {
    const pieces = [];
    for (let at = 0; at < body.length;) {
        const end = at + 16 + body.readUInt32LE(at + 17);
        pieces.push(body.subarray(at + 25, end));
        at = end;
    }
    return Buffer.concat(pieces);
}

const noSettings = ['database', 'query', 'query_id', 'session_id', 'session_timeout', 'decompress'];

async function answer(url, body) {
    const parameters = new URL(url, 'http://server').searchParams;
    await run(`USE ${parameters.get('database')}`);
    for (const [name, value] of parameters)
        if (!noSettings.includes(name)) await run(`SET ${name} = ${value}`);
    if (!parameters.has('query')) {
        // Sessions are one here: what another one has left is of no use.
        if (body.includes('CREATE TEMPORARY')) await run('DROP TEMPORARY TABLE IF EXISTS vekmsg_rows');
        return run(body.toString());
    }
    const isPacked = parameters.get('decompress') === '1';
    const file = `${folder}/rows${isPacked ? '.zst' : ''}`;
    writeFileSync(file, isPacked ? unpacked(body) : body);
    return run(parameters.get('query').replace(' FORMAT ', ` FROM INFILE '${file}' FORMAT `));
}

// Who gives a name is told what the engine tells of a wrong password. In a process it asks for none.
const refuse = "SELECT throwIf(1, 'no such user', toInt16(516)) SETTINGS allow_custom_error_code_in_throwif = 1";

const server = createServer(async (request, response) => {
    const pieces = [];
    for await (const piece of request) pieces.push(piece);
    try {
        if (request.headers.authorization) await run(refuse);
        response.end(await answer(request.url, Buffer.concat(pieces)));
    } catch (error) {
        response.statusCode = 500;
        response.end(error.message);
    }
});
server.listen(0, '127.0.0.1', () => console.log(server.address().port));
process.stdin.resume().on('end', () => process.exit());
