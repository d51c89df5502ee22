#!/usr/bin/env python3
"""A proxy on a free port of 127.0.0.1 that passes bytes on to another port, each held back for half of
the delay. Prints its port.

usage: delay_proxy.py PORT ROUND_TRIP_MS
"""
import asyncio
import sys

TARGET, DELAY = int(sys.argv[1]), float(sys.argv[2]) / 2000


async def pass_on(reader, writer):
    loop = asyncio.get_running_loop()
    queue = asyncio.Queue()

    async def deliver():
        while True:
            due, chunk = await queue.get()
            wait = due - loop.time()
            if wait > 0:
                await asyncio.sleep(wait)
            if not chunk:
                writer.close()
                return
            writer.write(chunk)
            await writer.drain()

    task = asyncio.create_task(deliver())
    try:
        while True:
            chunk = await reader.read(1 << 18)
            queue.put_nowait((loop.time() + DELAY, chunk))
            if not chunk:
                break
    except ConnectionError:
        queue.put_nowait((loop.time(), b""))
    try:
        await task
    except ConnectionError:
        pass


async def serve_client(reader, writer):
    there = await asyncio.open_connection("127.0.0.1", TARGET)
    await asyncio.gather(pass_on(reader, there[1]), pass_on(there[0], writer))


async def main():
    server = await asyncio.start_server(serve_client, "127.0.0.1", 0, limit=1 << 20)
    print(server.sockets[0].getsockname()[1], flush=True)
    await server.serve_forever()


asyncio.run(main())
